// The engine bridge over the scripted test engines. Every test uses a bridge instance of its own,
// never the process-wide one, so no test depends on what another has loaded.
#include "engine/TestEngine.h"

#include "engine/FloatingPointMaskGuard.h"
#include "engine/KorvaneDll.h"

#include <gtest/gtest.h>

#include <cfenv>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

using korvane::KorvaneDll;

namespace {

const std::string enginesDir = BRINECAST_TEST_ENGINES_DIR;

/// The canonical full name of `fileName` in the test engine directory `directory`.
std::string fullName(const std::string& directory, const std::string& fileName) {
    return (std::filesystem::canonical(enginesDir + "/" + directory) / fileName).string();
}

/// A message as the bridge composes it under the KV_DLL_LOG setting of this run (the
/// engine_log_switch tests pin both settings).
std::string bridgeMessage(const std::string& function, const std::string& text) {
    return std::getenv("KV_DLL_LOG") != nullptr ? "In function: " + function + ": " + text : text;
}

template <typename Call>
std::string runtimeErrorOf(Call call) {
    try {
        call();
    } catch (const std::runtime_error& e) {
        return e.what();
    }
    return "no std::runtime_error";
}

}  // namespace

TEST(KorvaneDll, LoadOnceTriesTheThreeFileNamesInOrder) {
    struct Case {
        const char* directory;
        const char* loaded;  // file name that must be loaded; empty: none
    };
    for (const Case& c : {Case{"names-all", "kvpvt64.dll"}, Case{"names-later", "KVBJ01.dll"},
                          Case{"names-last", "KVKOG.dll"}, Case{"empty", ""}, Case{"no-such-directory", ""}}) {
        KorvaneDll bridge;
        const bool found = bridge.loadOnce(enginesDir + "/" + c.directory);
        EXPECT_EQ(found, *c.loaded != '\0') << c.directory;
        EXPECT_EQ(bridge.isLoaded(), found) << c.directory;
        EXPECT_EQ(bridge.libraryPath(), found ? fullName(c.directory, c.loaded) : "") << c.directory;
    }
}

TEST(KorvaneDll, DirectoryIsTakenAsItStandsAndTheLibraryPathIsCanonical) {
    // "//" is appended whatever the directory ends with; the reported name has no "//" or ".".
    for (const std::string suffix : {"", "/", "/.", "/../scripted"}) {
        KorvaneDll bridge;
        EXPECT_TRUE(bridge.loadOnce(enginesDir + "/scripted" + suffix)) << suffix;
        EXPECT_EQ(bridge.libraryPath(), fullName("scripted", "kvpvt64.dll")) << suffix;
    }
}

TEST(KorvaneDll, FailedLoadNamesTheFileAndKeepsTheLibraryPath) {
    KorvaneDll bridge;
    bridge.load(enginesDir + "/scripted//kvpvt64.dll");
    const std::string loaded = bridge.libraryPath();
    // A missing import fails at load time, as a missing file does.
    for (const std::string& bad : {enginesDir + "/empty//kvpvt64.dll", enginesDir + "/unresolved-import//kvpvt64.dll"}) {
        EXPECT_EQ(runtimeErrorOf([&] { bridge.load(bad); }),
                  bridgeMessage("KorvaneDll::load", "cannot load korvane DLL " + bad));
        EXPECT_FALSE(bridge.isLoaded()) << bad;
        EXPECT_EQ(bridge.libraryPath(), loaded) << bad;
    }
    TestEngine(loaded).failAt("");
    // The next entry point to be resolved loads the library again from its path.
    std::int32_t count = 0, codes[KVPVT_ERROR_CAPACITY];
    KvpvtContext* context = bridge.createContext(&count, codes);
    EXPECT_TRUE(bridge.isLoaded());
    ASSERT_NE(context, nullptr);
    bridge.destroyContext(context);
    EXPECT_EQ(TestEngine(loaded).callLog(), "create;destroy");
}

TEST(KorvaneDll, MissingEntryPointIsNamedAndTheLibraryStaysLoaded) {
    KorvaneDll bridge;
    ASSERT_TRUE(bridge.loadOnce(enginesDir + "/incomplete"));
    const std::string expected = bridgeMessage(
        "KorvaneDll::resolveEntryPoint", "Could not load symbol kvpvt_phase_volume from " + fullName("incomplete", "kvpvt64.dll"));
    TestEngine(bridge.libraryPath()).failAt("");
    std::int32_t count = 0, codes[KVPVT_ERROR_CAPACITY];
    double volume = 0.0;
    // Asked twice: a missing entry point is not remembered as missing.
    for (int attempt = 0; attempt < 2; ++attempt) {
        EXPECT_EQ(runtimeErrorOf([&] { bridge.phaseVolume(nullptr, 0, &volume, &count, codes); }), expected);
        EXPECT_TRUE(bridge.isLoaded());
    }
    KvpvtContext* context = bridge.createContext(&count, codes);
    bridge.destroyContext(context);
    EXPECT_EQ(TestEngine(bridge.libraryPath()).callLog(), "create;destroy");
}

TEST(FloatingPointMaskGuard, RestoresTrapsButLeavesFlagsAndRoundingAlone) {
    feclearexcept(FE_ALL_EXCEPT);
    const int rounding = fegetround();
    {
        const korvane::FloatingPointMaskGuard guard;
        feenableexcept(FE_UNDERFLOW);
        feraiseexcept(FE_INEXACT);  // raising a flag whose trap is off only sets the flag
        fesetround(FE_UPWARD);
    }
    EXPECT_EQ(fegetexcept(), 0);
    EXPECT_NE(fetestexcept(FE_INEXACT), 0) << "a sticky flag raised inside the scope must stay raised";
    EXPECT_EQ(fegetround(), FE_UPWARD) << "the rounding mode is not the guard's business";
    fesetround(rounding);
    feclearexcept(FE_ALL_EXCEPT);
}

TEST(KorvaneDll, EngineStartUpCannotChangeTheHostsTraps) {
    feenableexcept(FE_OVERFLOW);
    KorvaneDll bridge;
    const bool loaded = bridge.loadOnce(enginesDir + "/fp-traps");
    const int hostTraps = fegetexcept();
    fedisableexcept(FE_ALL_EXCEPT);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(hostTraps, FE_OVERFLOW);
    EXPECT_EQ(TestEngine(bridge.libraryPath()).trapsAfterLoad(), FE_DIVBYZERO | FE_INVALID)
        << "the test engine did not change the traps, so this test proves nothing";
}
