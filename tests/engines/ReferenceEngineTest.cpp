// The shipped reference engine file (kvpvt64.dll) through the engine bridge, as the salt density
// calculator drives it. A bridge instance of its own, never the process-wide one.
#include "EngineCodes.h"
#include "engine/KorvaneDll.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

using korvane::KorvaneDll;
namespace ref = korvane::reference;

namespace {

/// One context of the reference engine and the codes of its last call.
struct Session {
    Session() { context = engine.createContext(&count, codes); }
    ~Session() { engine.destroyContext(context); }
    std::vector<std::int32_t> reported() const { return std::vector<std::int32_t>(codes, codes + count); }

    static KorvaneDll& loaded() {
        static KorvaneDll bridge;
        if (!bridge.isLoaded()) bridge.loadOnce(BRINECAST_REFERENCE_ENGINE_DIR);
        return bridge;
    }
    KorvaneDll& engine = loaded();
    KvpvtContext* context = nullptr;
    std::int32_t count = 0;
    std::int32_t codes[KVPVT_ERROR_CAPACITY] = {};
};

}  // namespace

TEST(ReferenceEngine, LoadsFromItsBuildDirectoryUnderTheFirstFileName) {
    const std::string& path = Session::loaded().libraryPath();
    ASSERT_TRUE(Session::loaded().isLoaded()) << "no engine in " << BRINECAST_REFERENCE_ENGINE_DIR;
    EXPECT_EQ(path.substr(path.rfind('/') + 1), "kvpvt64.dll");
}

TEST(ReferenceEngine, RefusesEveryNameItDoesNotKnow) {
    using Call = std::function<void(Session&, const char*)>;
    std::int32_t index = -1;
    const Call component = [&](Session& s, const char* n) { s.engine.loadComponent(s.context, n, &index, &s.count, s.codes); };
    const Call bip = [](Session& s, const char* n) { s.engine.addBipSet(s.context, n, &s.count, s.codes); };
    const Call model = [](Session& s, const char* n) { s.engine.addModel(s.context, n, &s.count, s.codes); };
    const Call salt = [](Session& s, const char* n) { s.engine.loadSaltDensityModel(s.context, n, &s.count, s.codes); };
    const Call phase = [&](Session& s, const char* n) {
        component(s, "WATER");
        s.engine.addPhase(s.context, n, index, &index, &s.count, s.codes);
    };
    struct Case {
        const Call& call;
        std::vector<const char*> known, unknown;
        std::int32_t code;
    };
    for (const Case& c : {Case{component, {"WATER", "NaCl"}, {"KCl", "water", ""}, ref::UnknownComponent},
                          Case{bip, {"LBIP1", "LBIP2", "LBIP3"}, {"LBIP4", "lbip1"}, ref::UnknownBipSet},
                          Case{model, {"MCPA"}, {"PR", "MSALTDEN"}, ref::UnknownModel},
                          Case{salt, {"MSALTDEN"}, {"MCPA"}, ref::UnknownSaltDensityModel},
                          Case{phase, {"water"}, {"oil", "WATER"}, ref::UnknownPhase}}) {
        for (const char* name : c.known) {
            Session s;
            c.call(s, name);
            EXPECT_EQ(s.reported(), std::vector<std::int32_t>{}) << name;
        }
        for (const char* name : c.unknown) {
            Session s;
            c.call(s, name);
            EXPECT_EQ(s.reported(), std::vector<std::int32_t>{c.code}) << name;
        }
    }
}

TEST(ReferenceEngine, AmountsFollowTheLoadingOrderAndWarningsComeBackAsCodes) {
    Session s;
    std::int32_t salt = -1, water = -1, phase = -1;
    s.engine.loadComponent(s.context, "NaCl", &salt, &s.count, s.codes);
    s.engine.loadComponent(s.context, "WATER", &water, &s.count, s.codes);
    s.engine.addModel(s.context, "MCPA", &s.count, s.codes);
    s.engine.loadSaltDensityModel(s.context, "MSALTDEN", &s.count, s.codes);
    s.engine.addPhase(s.context, "water", water, &phase, &s.count, s.codes);
    EXPECT_EQ(salt, 0);
    EXPECT_EQ(water, 1);
    // The 393.15 K brine of the engine check table, asked for at 1 atm: below the boiling pressure.
    const double amounts[] = {2.0, 50.0};
    s.engine.evaluate(s.context, 393.15, 101325.0, amounts, 2, &s.count, s.codes);
    EXPECT_EQ(s.reported(), std::vector<std::int32_t>{ref::PressureRaisedToSaturation});
    double volume = 0.0;  // m3
    s.engine.phaseVolume(s.context, phase, &volume, &s.count, s.codes);
    EXPECT_EQ(s.reported(), std::vector<std::int32_t>{});
    EXPECT_NEAR(volume, 0.0009939560049, 1e-9 * 0.0009939560049);
}
