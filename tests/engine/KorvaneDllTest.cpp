// The engine bridge over the test engines. Every test uses a bridge instance of its own, never
// the process-wide one, so no test depends on what another has loaded. The bridge's messages are
// pinned by the engine_log_switch programs, under both settings of KV_DLL_LOG.
#include "engine/TestEngine.h"

#include "engine/FloatingPointMaskGuard.h"
#include "engine/KorvaneDll.h"

#include <gtest/gtest.h>

#include <cfenv>
#include <filesystem>
#include <stdexcept>
#include <string>

using korvane::KorvaneDll;

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
    EXPECT_EQ(testEngineControl<int (*)()>(bridge.libraryPath(), "kvtest_traps_after_load")(), FE_DIVBYZERO | FE_INVALID)
        << "the test engine did not change the traps, so this test proves nothing";
}
