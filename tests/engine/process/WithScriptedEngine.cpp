// The salt density calculator over the scripted test engine, loaded by the process-wide bridge in
// a process of its own: the order of the engine calls and each failure's message.
#include "engine/TestEngine.h"

#include "database/SpeciesModel.h"
#include "engine/KorvaneDll.h"
#include "engine/SaltDensityCalculator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <exception>
#include <string>
#include <vector>

using namespace korvane::Brinecast;
using korvane::KorvaneError;

namespace {

/// One litre with 0.5 mol each of Na and Cl, at 310 K and 2 bar, over the scripted engine.
Input scriptedBrine() {
    Input input;
    input.dllPath = BRINECAST_TEST_ENGINES_DIR "/scripted";
    input.temperature = 310.0;
    input.pressure = 2e5;
    input.elements.assign({{"Na", 500.0}, {"Cl", 500.0}}, MmolPerL);
    return input;
}

struct ScriptedBrine : testing::Test {
    /// Every engine call since the last failAt, "create;component WATER;...;destroy".
    std::string callLog() const { return control<const char* (*)()>("kvtest_call_log")(); }
    /// Makes the engine call whose log entry starts with `step` fail from now on.
    void failAt(const char* step) const { control<void (*)(const char*)>("kvtest_fail_at")(step); }
    template <typename Function>
    Function control(const char* name) const {
        return testEngineControl<Function>(korvane::KorvaneDll::shared()->libraryPath(), name);
    }

    const Input input = scriptedBrine();
    const SpeciesModel model;
    SaltDensityCalculator calculator{input, model};
};

}  // namespace

TEST_F(ScriptedBrine, DrivesTheEngineInOrderAndDividesMassByVolume) {
    failAt("");
    // Every call reports the informational codes -5 and 200, which must not stop the calculation.
    const double density = calculator.density();
    // The scripted engine gives 2e-5 m3 per mol: 50 mol of water per litre, 50.5 mol in the brine.
    const double mass = 18.01528 * 50.0 + 22.9898 * 0.5 + 35.453 * 0.5;  // g
    EXPECT_NEAR(density, mass / (2e-5 * 50.5 * 1e6), 1e-12);
    const std::string setUp = "bip LBIP1;bip LBIP2;bip LBIP3;model MCPA;saltmodel MSALTDEN;";
    const std::string water = "create;component WATER;" + setUp + "phase water 0;evaluate 310 200000 1;volume 3;destroy;";
    // The second mixture's components come in the map's order; amounts and solvent follow the engine's numbering.
    EXPECT_THAT(callLog(), testing::AnyOf(water + "create;component WATER;component NaCl;" + setUp +
                                              "phase water 0;evaluate 310 200000 50 0.5;volume 3;destroy",
                                          water + "create;component NaCl;component WATER;" + setUp +
                                              "phase water 1;evaluate 310 200000 0.5 50;volume 3;destroy"));
}

TEST_F(ScriptedBrine, EachFailingEngineStepHasItsOwnMessageAndReleasesTheContext) {
    const std::vector<std::int32_t> engineCodes = {-5, 200, 250};
    const struct {
        const char* step;
        const char* message;
        std::vector<std::int32_t> nestedCodes;  // the engine's report, kept inside the error
    } cases[] = {
        {"create", "load component failed.\n", engineCodes},
        {"component WATER", "load component failed.\n", engineCodes},
        {"bip LBIP1", "Error to add BIP set:LBIP1.\n", engineCodes},
        {"bip LBIP2", "Error to add BIP set:LBIP2.\n", engineCodes},
        {"bip LBIP3", "Error to add BIP set:LBIP3.\n", engineCodes},
        {"model", "Adding CPA failed. \n", engineCodes},
        {"saltmodel", "Loading salt density model failed. \n", engineCodes},
        {"phase", "adding water phase failed. \n", engineCodes},
        {"evaluate", "Error evaluating model. \n", engineCodes},
        {"volume", "Error calculating volume. \n", engineCodes},
        {"zero volume", "Error calculating volume. \n", {}},  // no engine error, but no density either
    };
    for (const auto& c : cases) {
        failAt(c.step);
        std::vector<std::int32_t> nested;
        try {
            calculator.density();
            ADD_FAILURE() << c.step << " did not fail";
        } catch (const KorvaneError& e) {
            EXPECT_STREQ(e.what(), c.message) << c.step;
            try {
                std::rethrow_if_nested(e);
            } catch (const KorvaneError& reported) {
                nested.assign(reported.codes.begin(), reported.codes.end());
            }
        }
        EXPECT_EQ(nested, c.nestedCodes) << c.step;
        // The context is released after a failure too, unless none was made.
        const bool made = std::string(c.step) != "create";
        EXPECT_EQ(callLog().find("destroy") != std::string::npos, made) << c.step;
    }
}
