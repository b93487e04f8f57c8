// No engine library can be found: a process of its own, since a loaded engine stays loaded.
#include "database/SpeciesModel.h"
#include "engine/ProcessedInput.h"

#include <gtest/gtest.h>

#include <stdexcept>

using namespace korvane::Brinecast;

TEST(ProcessInput, OnlyPerLitreAnalysesWithoutDensityLookForTheEngineEvenBeforeTheirUnit) {
    const SpeciesModel model;
    for (int unit : {1, 2, 3, 4, 5, 7, -1}) {  // 7 and -1 reach the density calculator too
        Input input;
        input.dllPath = BRINECAST_TEST_ENGINES_DIR "/empty";
        input.elements.assign({{"Na", 0.5}, {"Cl", 0.5}}, static_cast<ConcentUnit>(unit));
        if (unit == 1 || unit == 2 || unit == 5) {
            EXPECT_EQ(processInput(input, model).input.density, 1.0);
            EXPECT_NO_THROW(run(input));
            continue;
        }
        try {
            run(input);
            ADD_FAILURE() << "unit " << unit << ": no failure";
        } catch (const std::runtime_error& e) {
            EXPECT_STREQ(e.what(), "Korvane dll could not be loaded") << "unit " << unit;
        }
    }
}
