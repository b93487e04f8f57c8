// No engine library can be found: a process of its own, since a loaded engine stays loaded.
#include "database/SpeciesModel.h"
#include "engine/SaltDensityCalculator.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

using namespace korvane::Brinecast;

TEST(SaltDensityCalculator, DirectoryWithoutAnyEngineFileIsRefusedBeforeTheUnit) {
    const SpeciesModel model;
    // The engine is located before the unit is looked at, so even unit 6 fails on the engine.
    for (const std::string& directory : {std::string(BRINECAST_TEST_ENGINES_DIR "/empty"), std::string("/no/such/directory")}) {
        for (int unit : {3, 4, 6}) {  // mmol/L, mg/L, beyond the known units
            Input input;
            input.dllPath = directory;
            input.elements.assign({{"Na", 1.0}, {"Cl", 1.0}}, static_cast<ConcentUnit>(unit));
            try {
                SaltDensityCalculator calculator(input, model);
                ADD_FAILURE() << directory << " unit " << unit << ": no failure";
            } catch (const std::runtime_error& e) {
                EXPECT_STREQ(e.what(), "Korvane dll could not be loaded") << directory << " unit " << unit;
            }
        }
    }
}
