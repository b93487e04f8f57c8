// No engine library can be found: a process of its own, since a loaded engine stays loaded.
#include "database/SpeciesModel.h"
#include "engine/ProcessedInput.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

using namespace korvane::Brinecast;

TEST(ProcessInput, OnlyPerLitreAnalysesWithoutDensityLookForTheEngineEvenBeforeTheirUnit) {
    const SpeciesModel model;
    for (const char* directory : {BRINECAST_TEST_ENGINES_DIR "/empty", "/no/such/directory"}) {
        for (int unit : {1, 2, 3, 4, 5, 7, -1}) {  // 7 and -1 reach the density calculator too
            Input input;
            input.dllPath = directory;
            input.elements.assign({{"Na", 0.5}, {"Cl", 0.5}}, static_cast<ConcentUnit>(unit));
            if (unit == MolPerKgw || unit == MmolPerKgw || unit == MgPerKg) {
                EXPECT_EQ(processInput(input, model).input.density, 1.0) << unit;
            } else {
                EXPECT_THAT([&] { processInput(input, model); },
                            testing::ThrowsMessage<std::runtime_error>(testing::StrEq("Korvane dll could not be loaded")))
                    << directory << " unit " << unit;
            }
        }
    }
}
