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

/// Built on first use, after every static table of the library is ready.
const SpeciesModel& model() {
    static const SpeciesModel built;
    return built;
}

/// One litre with 0.5 mol each of Na and Cl, at 310 K and 2 bar.
Input brine() {
    Input input;
    input.dllPath = BRINECAST_TEST_ENGINES_DIR "/scripted";
    input.temperature = 310.0;
    input.pressure = 2e5;
    input.elements.assign({{"Na", 500.0}, {"Cl", 500.0}}, MmolPerL);
    return input;
}

}  // namespace

TEST(SaltDensityCalculator, DrivesTheEngineInOrderAndDividesMassByVolume) {
    Input input = brine();
    SaltDensityCalculator calculator(input, model());
    TestEngine engine(korvane::KorvaneDll::shared()->libraryPath());
    engine.failAt("");
    // Every call reports the informational codes -5 and 200, which must not stop the calculation.
    const double density = calculator.density();

    // The scripted engine gives 2e-5 m3 per mol: 50 mol of water per litre, 50.5 mol in the brine.
    const double mass = 18.01528 * 50.0 + 22.9898 * 0.5 + 35.453 * 0.5;  // g
    EXPECT_NEAR(density, mass / (2e-5 * 50.5 * 1e6), 1e-12);
    const std::string setUp = "bip LBIP1;bip LBIP2;bip LBIP3;model MCPA;saltmodel MSALTDEN;";
    const std::string water = "create;component WATER;" + setUp + "phase water 0;evaluate 310 200000 1;volume 3;destroy;";
    // The second mixture's components come in the map's order; amounts and solvent follow the engine's numbering.
    EXPECT_THAT(engine.callLog(),
                testing::AnyOf(water + "create;component WATER;component NaCl;" + setUp +
                                   "phase water 0;evaluate 310 200000 50 0.5;volume 3;destroy",
                               water + "create;component NaCl;component WATER;" + setUp +
                                   "phase water 1;evaluate 310 200000 0.5 50;volume 3;destroy"));
}

TEST(SaltDensityCalculator, EachFailingEngineStepHasItsOwnMessage) {
    struct Case {
        const char* step;
        const char* message;
    };
    const Case cases[] = {
        {"create", "load component failed.\n"},
        {"component WATER", "load component failed.\n"},
        {"bip LBIP1", "Error to add BIP set:LBIP1.\n"},
        {"bip LBIP2", "Error to add BIP set:LBIP2.\n"},
        {"bip LBIP3", "Error to add BIP set:LBIP3.\n"},
        {"model", "Adding CPA failed. \n"},
        {"saltmodel", "Loading salt density model failed. \n"},
        {"phase", "adding water phase failed. \n"},
        {"evaluate", "Error evaluating model. \n"},
        {"volume", "Error calculating volume. \n"},
    };
    Input input = brine();
    SaltDensityCalculator calculator(input, model());
    TestEngine engine(korvane::KorvaneDll::shared()->libraryPath());
    for (const Case& c : cases) {
        engine.failAt(c.step);
        try {
            calculator.density();
            ADD_FAILURE() << c.step << " did not fail";
        } catch (const KorvaneError& e) {
            EXPECT_STREQ(e.what(), c.message) << c.step;
            try {
                std::rethrow_if_nested(e);
                ADD_FAILURE() << c.step << ": no engine codes kept";
            } catch (const KorvaneError& reported) {
                EXPECT_EQ(reported.codes, (std::vector<std::uint32_t>{static_cast<std::uint32_t>(-5), 200, 250}))
                    << c.step;
            }
        }
        // The context is released after a failure too (a context that was never made excepted).
        const std::string log = engine.callLog();
        if (std::string(c.step) == "create") {
            EXPECT_THAT(log, testing::Not(testing::HasSubstr("destroy")));
        } else {
            EXPECT_THAT(log, testing::EndsWith(";destroy")) << c.step;
        }
    }
}

TEST(SaltDensityCalculator, ZeroVolumeWithoutAnEngineErrorIsStillAFailure) {
    Input input = brine();
    SaltDensityCalculator calculator(input, model());
    TestEngine engine(korvane::KorvaneDll::shared()->libraryPath());
    engine.failAt("zero volume");
    try {
        calculator.density();
        FAIL() << "a zero volume gave a density";
    } catch (const KorvaneError& e) {
        EXPECT_STREQ(e.what(), "Error calculating volume. \n");
    }
}
