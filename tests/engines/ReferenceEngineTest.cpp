// The reference engine: the names it accepts, and the shipped engine file (kvpvt64.dll) driven
// through the engine bridge as the salt density calculator drives it, on a bridge of its own.
#include "BrineVolume.h"
#include "EngineCodes.h"
#include "EngineContext.h"
#include "engine/KorvaneDll.h"

#include <gtest/gtest.h>

#include <vector>

using namespace korvane::reference;

TEST(ReferenceEngine, RefusesEveryNameItDoesNotKnow) {
    EngineContext engine;
    std::int32_t index = -1;
    for (const char* name : {"KCl", "water", ""}) EXPECT_EQ(engine.loadComponent(name, index), UnknownComponent) << name;
    for (const char* name : {"LBIP1", "LBIP2", "LBIP3"}) EXPECT_EQ(engine.addBipSet(name), 0) << name;
    for (const char* name : {"LBIP4", "lbip1"}) EXPECT_EQ(engine.addBipSet(name), UnknownBipSet) << name;
    for (const char* name : {"PR", "MSALTDEN"}) EXPECT_EQ(engine.addModel(name), UnknownModel) << name;
    EXPECT_EQ(engine.loadSaltDensityModel("MCPA"), UnknownSaltDensityModel);
    ASSERT_EQ(engine.loadComponent("WATER", index), 0);
    for (const char* name : {"oil", "WATER"}) EXPECT_EQ(engine.addPhase(name, index, index), UnknownPhase) << name;
    EXPECT_EQ(engine.addPhase("water", index + 1, index), SolventIsNotWater);
}

TEST(ReferenceEngine, AmountsFollowTheLoadingOrderAndEveryKindOfCodeComesBack) {
    korvane::KorvaneDll engine;
    ASSERT_TRUE(engine.loadOnce(BRINECAST_REFERENCE_ENGINE_DIR));
    std::int32_t count = 0, codes[KVPVT_ERROR_CAPACITY], salt = -1, water = -1, phase = -1;
    const auto reported = [&] { return std::vector<std::int32_t>(codes, codes + count); };
    KvpvtContext* context = engine.createContext(&count, codes);
    engine.loadComponent(context, "NaCl", &salt, &count, codes);
    engine.loadComponent(context, "WATER", &water, &count, codes);
    engine.addModel(context, "MCPA", &count, codes);
    engine.loadSaltDensityModel(context, "MSALTDEN", &count, codes);
    engine.addPhase(context, "water", water, &phase, &count, codes);
    EXPECT_EQ(std::vector<std::int32_t>({salt, water}), std::vector<std::int32_t>({0, 1}));
    // The 393.15 K brine of the engine check table, asked for at 1 atm: below the boiling pressure.
    const double amounts[] = {2.0, 50.0};  // mol, by component index
    engine.evaluate(context, 393.15, 101325.0, amounts, 2, &count, codes);
    EXPECT_EQ(reported(), std::vector<std::int32_t>{PressureRaisedToSaturation});
    double volume = 0.0;  // m3
    engine.phaseVolume(context, phase, &volume, &count, codes);
    EXPECT_EQ(reported(), std::vector<std::int32_t>{});
    EXPECT_NEAR(volume, 0.0009939560049, 1e-9 * 0.0009939560049);
    const double pastTheFit[] = {5.8 * 50.0 * waterMolarMass, 50.0};  // 5.8 mol/kg
    engine.evaluate(context, 298.15, 101325.0, pastTheFit, 2, &count, codes);
    EXPECT_EQ(reported(), std::vector<std::int32_t>{MolalityExtrapolated});
    engine.addModel(context, "PR", &count, codes);
    EXPECT_EQ(reported(), std::vector<std::int32_t>{UnknownModel});
    engine.destroyContext(context);
}
