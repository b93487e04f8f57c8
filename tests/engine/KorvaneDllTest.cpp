// The engine bridge over the test engines. Every test uses a bridge instance of its own, never
// the process-wide one, so no test depends on what another has loaded. The bridge's messages are
// pinned by the engine_log_switch programs, under both settings of KV_DLL_LOG.
#include "engine/TestEngine.h"

#include "engine/FloatingPointEnvironmentGuard.h"
#include "engine/KorvaneDll.h"

#include <gtest/gtest.h>

#ifdef _WIN32
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>
#endif

#include <cfenv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

using korvane::KorvaneDll;
using korvane::platform::enabledFloatingPointTraps;
using korvane::platform::setEnabledFloatingPointTraps;

namespace {
const std::string enginesDir = BRINECAST_TEST_ENGINES_DIR;
}  // namespace

TEST(KorvaneDll, LoadOnceTriesTheThreeFileNamesInOrder) {
    const std::pair<const char*, const char*> cases[] = {  // directory, file that must load ("": none)
        {"names-all", "kvpvt64.dll"}, {"names-later", "KVBJ01.dll"}, {"names-last", "KVKOG.dll"}, {"empty", ""},
        {"no-such-directory", ""}};
    for (const auto& [directory, loaded] : cases) {
        KorvaneDll bridge;
        const bool found = bridge.loadOnce(enginesDir + "/" + directory);
        EXPECT_EQ(found, *loaded != '\0') << directory;
        EXPECT_EQ(bridge.isLoaded(), found) << directory;
        // The loader is asked for "directory//file"; the reported name is the file's canonical one.
        const auto canonical = found ? std::filesystem::canonical(enginesDir + "/" + directory) / loaded : "";
        EXPECT_EQ(bridge.libraryPath(), canonical.string()) << directory;
    }
}

TEST(KorvaneDll, FailedLoadKeepsTheLibraryPathAndTheNextCallLoadsItAgain) {
    KorvaneDll bridge;
    bridge.load(enginesDir + "/scripted//kvpvt64.dll");
    const std::string loaded = bridge.libraryPath();
    // A missing import fails at load time, as a missing file does.
    for (const std::string bad : {"/empty//kvpvt64.dll", "/unresolved-import//kvpvt64.dll"}) {
        EXPECT_THROW(bridge.load(enginesDir + bad), std::runtime_error) << bad;
        EXPECT_FALSE(bridge.isLoaded()) << bad;
        EXPECT_EQ(bridge.libraryPath(), loaded) << bad;
    }
    std::int32_t count = 0, codes[KVPVT_ERROR_CAPACITY];
    bridge.destroyContext(bridge.createContext(&count, codes));
    EXPECT_TRUE(bridge.isLoaded());
}

TEST(FloatingPointEnvironmentGuard, RestoresTrapsAndRoundingButLeavesFlagsAlone) {
    feclearexcept(FE_ALL_EXCEPT);
    const int rounding = fegetround();
    {
        const korvane::FloatingPointEnvironmentGuard guard;
        setEnabledFloatingPointTraps(FE_UNDERFLOW);
        feraiseexcept(FE_INEXACT);  // raising a flag whose trap is off only sets the flag
        fesetround(FE_UPWARD);
    }
    EXPECT_EQ(enabledFloatingPointTraps(), 0);
    EXPECT_EQ(fegetround(), rounding);
    EXPECT_NE(fetestexcept(FE_INEXACT), 0) << "a sticky flag raised inside the scope must stay raised";
    feclearexcept(FE_ALL_EXCEPT);
}

TEST(KorvaneDll, EngineCallsCannotChangeTheHostsTrapsOrRounding) {
    KorvaneDll bridge;
    ASSERT_TRUE(bridge.loadOnce(enginesDir + "/scripted"));
    testEngineControl<void (*)()>(bridge.libraryPath(), "kvtest_unsettle_floating_point")();
    const int rounding = fegetround();
    std::int32_t count = 0, codes[KVPVT_ERROR_CAPACITY];
    KvpvtContext* context = bridge.createContext(&count, codes);
    double volume = 0.0;
    bridge.phaseVolume(context, 3, &volume, &count, codes);
    bridge.destroyContext(context);
    EXPECT_EQ(enabledFloatingPointTraps(), 0);
    EXPECT_EQ(fegetround(), rounding);
    // A zero total's logarithm is what a host computes next; with a trap left on it would kill it.
    volatile double zero = 0.0;
    EXPECT_EQ(std::log10(zero), -HUGE_VAL);
}

/// Calls the test engine directly, as a host without the bridge would, then divides by zero.
[[noreturn]] void divideByZeroAfterAnEngineCallOutsideTheBridge() {
#ifdef _WIN32
    // The trap is expected: end with its exception code rather than start a crash debugger.
    SetUnhandledExceptionFilter([](EXCEPTION_POINTERS*) -> LONG { return EXCEPTION_EXECUTE_HANDLER; });
#endif
    KorvaneDll bridge;
    if (!bridge.loadOnce(enginesDir + "/scripted")) std::abort();
    const std::string engine = bridge.libraryPath();
    testEngineControl<void (*)()>(engine, "kvtest_unsettle_floating_point")();
    std::int32_t count = 0;
    std::int32_t codes[KVPVT_ERROR_CAPACITY];
    testEngineControl<decltype(&kvpvt_context_create)>(engine, KVPVT_CONTEXT_CREATE_NAME)(&count, codes);
    volatile double zero = 0.0;
    std::fprintf(stderr, "the host survived a division by zero: %g\n", 1.0 / zero);
    std::exit(0);
}

// The trap the test engine switches on is real: an engine call that bypasses the bridge leaves it
// on, and the host's next division by zero kills the process. The bridge's guard is what stands
// between an engine and that.
TEST(KorvaneDllDeathTest, AnEngineCallOutsideTheBridgeLeavesATrapThatKillsTheHost) {
    EXPECT_DEATH(divideByZeroAfterAnEngineCallOutsideTheBridge(), "");
}

TEST(KorvaneDll, ManyThreadsAskingForTheFirstLoadAtOnceGetOneLibrary) {
    KorvaneDll bridge;
    std::vector<std::thread> threads;
    std::vector<char> found(8, 0);
    for (std::size_t t = 0; t < found.size(); ++t) {
        threads.emplace_back([&, t] {
            found[t] = bridge.loadOnce(enginesDir + "/names-all");
            std::int32_t count = 0, codes[KVPVT_ERROR_CAPACITY];
            bridge.destroyContext(bridge.createContext(&count, codes));
        });
    }
    for (std::thread& thread : threads) thread.join();
    for (char f : found) EXPECT_TRUE(f);
    EXPECT_EQ(bridge.libraryPath(), std::filesystem::canonical(enginesDir + "/names-all/kvpvt64.dll").string());
}

TEST(KorvaneDll, EngineStartUpCannotChangeTheHostsTraps) {
    setEnabledFloatingPointTraps(FE_OVERFLOW);
    KorvaneDll bridge;
    const bool loaded = bridge.loadOnce(enginesDir + "/fp-traps");
    const int hostTraps = enabledFloatingPointTraps();
    setEnabledFloatingPointTraps(0);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(hostTraps, FE_OVERFLOW);
    EXPECT_EQ(testEngineControl<int (*)()>(bridge.libraryPath(), "kvtest_traps_after_load")(), FE_DIVBYZERO | FE_INVALID)
        << "the test engine did not change the traps, so this test proves nothing";
}
