// The platform seam on whichever system the tests run: loading engines, naming them, and the
// floating-point traps, whose Windows masks have the opposite sense of the FE_* bits.
#include "engine/Platform.h"

#include <gtest/gtest.h>

#include <cfenv>
#include <cfloat>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#ifdef _WIN32
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>
#endif

namespace platform = korvane::platform;

namespace {

const std::string enginesDir = BRINECAST_TEST_ENGINES_DIR;
// The loaders' own words differ; a missing file and a missing import are error 126 on Windows.
#ifdef _WIN32
#define LOADER_SAYS(onLinux, onWindows) onWindows
#else
#define LOADER_SAYS(onLinux, onWindows) onLinux
#endif

/// One arithmetic operation that raises exactly one floating-point exception.
struct TrapCase {
    const char* name;
    int trap;
    double (*raise)();
};

volatile double zero = 0.0;
volatile double huge = DBL_MAX;
const TrapCase trapCases[] = {
    {"division by zero", FE_DIVBYZERO, [] { return 1.0 / zero; }},
    {"invalid operation", FE_INVALID, [] { return zero / zero; }},
    {"overflow", FE_OVERFLOW, [] { return huge * huge; }},
};
constexpr int everyStandardTrap = FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW | FE_UNDERFLOW | FE_INEXACT;

/// Raises the case's exception with the traps `traps` on, and exits with status 0 if it lives.
[[noreturn]] void raiseWithTrapsOn(const TrapCase& c, int traps) {
#ifdef _WIN32
    // The trap is expected: end with its exception code rather than start a crash debugger.
    SetUnhandledExceptionFilter([](EXCEPTION_POINTERS*) -> LONG { return EXCEPTION_EXECUTE_HANDLER; });
#endif
    platform::setEnabledFloatingPointTraps(traps);
    std::fprintf(stderr, "survived the %s: %g\n", c.name, c.raise());
    std::exit(0);
}

}  // namespace

TEST(Platform, LoadErrorsAreEmptyOnlyForALoadableLibraryAndNameTheCause) {
    const std::pair<const char*, const char*> cases[] = {  // engine file, cause (null: it loads)
        {"/scripted/kvpvt64.dll", nullptr},
        {"/empty/kvpvt64.dll", LOADER_SAYS("No such file or directory", "(Windows error 126)")},
        // A missing import fails the load itself, not a later call.
        {"/unresolved-import/kvpvt64.dll",
         LOADER_SAYS("undefined symbol: kvtest_function_that_no_library_defines", "(Windows error 126)")},
        {"/no-such-directory/kvpvt64.dll", LOADER_SAYS("No such file or directory", "(Windows error 126)")}};
    for (const auto& [file, cause] : cases) {
        const platform::ModuleHandle module = platform::openLibrary(enginesDir + file);
        EXPECT_EQ(module != nullptr, cause == nullptr) << file;
        platform::closeLibrary(module);
        const std::string reason = platform::libraryLoadError(enginesDir + file);
        EXPECT_NE(reason.find(cause != nullptr ? cause : ""), std::string::npos) << file << ": " << reason;
        EXPECT_EQ(reason.empty(), cause == nullptr) << file << ": " << reason;
        EXPECT_EQ(reason.find('\n'), std::string::npos) << "a reason quoted in a message must stay on its line";
    }
}

TEST(Platform, LoadedLibraryIsNamedByItsCanonicalFileAndFindsOnlyItsOwnExports) {
    const std::string canonical = std::filesystem::canonical(enginesDir + "/scripted/kvpvt64.dll").string();
    for (const std::string asked :
         {"/scripted/kvpvt64.dll", "/scripted//kvpvt64.dll", "/empty/../scripted/kvpvt64.dll"}) {
        const platform::ModuleHandle module = platform::openLibrary(enginesDir + asked);
        ASSERT_NE(module, nullptr) << asked;
        EXPECT_EQ(platform::moduleFileName(module), canonical) << asked;
        EXPECT_NE(platform::findSymbol(module, "kvpvt_context_create"), nullptr) << asked;
        EXPECT_EQ(platform::findSymbol(module, "kvpvt_no_such_entry"), nullptr) << asked;
        platform::closeLibrary(module);
    }
    // A null module is no library: nothing is found in it, not even what the program itself has.
    EXPECT_EQ(platform::findSymbol(nullptr, "kvpvt_context_create"), nullptr);
    EXPECT_EQ(platform::moduleFileName(nullptr), "");
}

TEST(Platform, TrapsReadBackAsSetAndLeaveRoundingAndFlagsAlone) {
    const int saved = platform::enabledFloatingPointTraps();
    const int rounding = std::fegetround();
    for (int traps : {0, FE_DIVBYZERO, FE_INVALID | FE_OVERFLOW, FE_UNDERFLOW, FE_INEXACT, everyStandardTrap}) {
        std::feclearexcept(FE_ALL_EXCEPT);
        platform::setEnabledFloatingPointTraps(0);
        // A raised flag whose trap then goes on would fire at the next instruction: only a flag
        // whose trap stays off can show that switching traps keeps it.
        const bool withFlag = (traps & FE_INEXACT) == 0;
        if (withFlag) std::feraiseexcept(FE_INEXACT);
        platform::setEnabledFloatingPointTraps(traps);
        const int readBack = platform::enabledFloatingPointTraps();
        const bool flagKept = std::fetestexcept(FE_INEXACT) != 0;
        platform::setEnabledFloatingPointTraps(0);
        EXPECT_EQ(readBack, traps) << traps;
        EXPECT_EQ(flagKept, withFlag) << traps;
        EXPECT_EQ(std::fegetround(), rounding) << traps;
    }
    std::feclearexcept(FE_ALL_EXCEPT);
    platform::setEnabledFloatingPointTraps(saved);
}

// Each trap stops exactly its own exception: a bit mapped to the wrong mask would either let the
// operation through with its trap on, or stop it with only the other traps on.
TEST(PlatformDeathTest, EachTrapStopsItsOwnExceptionAndNoOther) {
    for (const TrapCase& c : trapCases) {
        EXPECT_DEATH(raiseWithTrapsOn(c, c.trap), "") << c.name;
        // Inexact aside (each of these operations also rounds), every other trap lets it through.
        EXPECT_EXIT(raiseWithTrapsOn(c, everyStandardTrap & ~c.trap & ~FE_INEXACT), testing::ExitedWithCode(0),
                    "survived")
            << c.name;
    }
}
