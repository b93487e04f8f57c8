// Windows implementation of the platform seam: LoadLibraryExA/GetProcAddress and the C runtime's
// exception masks (_controlfp_s). The same contract as the Linux side, in the loader's own terms.
#include "engine/Platform.h"

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

#include <float.h>

#include <array>
#include <cfenv>
#include <string>
#include <utility>

namespace korvane {
namespace platform {
namespace {

/// A missing file or DLL must come back as an error, never as a dialog box that waits for a
/// user no server process has. Restores the thread's previous error mode when it goes.
class QuietLoaderErrors {
public:
    QuietLoaderErrors() {
        if (!SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &saved_)) saved_ = kNotSet;
    }
    ~QuietLoaderErrors() {
        if (saved_ != kNotSet) SetThreadErrorMode(saved_, nullptr);
    }
    QuietLoaderErrors(const QuietLoaderErrors&) = delete;
    QuietLoaderErrors& operator=(const QuietLoaderErrors&) = delete;

private:
    static constexpr DWORD kNotSet = ~DWORD{0};
    DWORD saved_ = kNotSet;
};

/// Loads `path`; `error` gets the loader's error code, read before anything else can reset it.
HMODULE load(const std::string& path, DWORD& error) {
    const QuietLoaderErrors quiet;
    // No flags: the file and its own imports are looked up exactly as LoadLibraryA does, with the
    // path as it stands ("dir//kvpvt64.dll" included), since hosts place engines for that search.
    const HMODULE module = LoadLibraryExA(path.c_str(), nullptr, 0);
    error = module == nullptr ? GetLastError() : ERROR_SUCCESS;
    return module;
}

std::string systemMessage(DWORD code) {
    char* text = nullptr;
    const DWORD length = FormatMessageA(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code,
        MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), reinterpret_cast<char*>(&text), 0, nullptr);
    std::string message(text != nullptr ? text : "", length);
    if (text != nullptr) LocalFree(text);
    // The system's text ends in ".\r\n"; a message quoted inside ours must not break the line.
    while (!message.empty() && (message.back() == '\n' || message.back() == '\r' || message.back() == ' ')) {
        message.pop_back();
    }
    if (message.empty()) message = "the loader gave no reason";
    return message + " (Windows error " + std::to_string(code) + ")";
}

/// The C runtime's mask bit for each FE_* trap. A set mask bit means the exception is NOT
/// trapped, the opposite sense of the seam's FE_* bits, so every conversion goes through here.
constexpr std::array<std::pair<int, unsigned int>, 6> trapMaskBits{{
    {FE_INVALID, _EM_INVALID},
    {FE_DENORMAL, _EM_DENORMAL},
    {FE_DIVBYZERO, _EM_ZERODIVIDE},
    {FE_OVERFLOW, _EM_OVERFLOW},
    {FE_UNDERFLOW, _EM_UNDERFLOW},
    {FE_INEXACT, _EM_INEXACT},
}};

}  // namespace

ModuleHandle openLibrary(const std::string& path) {
    DWORD ignored = ERROR_SUCCESS;
    return reinterpret_cast<ModuleHandle>(load(path, ignored));
}

void closeLibrary(ModuleHandle module) {
    if (module != nullptr) FreeLibrary(static_cast<HMODULE>(module));
}

void* findSymbol(ModuleHandle module, const char* name) {
    // A null module is no library: never let the loader look anywhere else for the name.
    if (module == nullptr) return nullptr;
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(module), name));
}

std::string libraryLoadError(const std::string& path) {
    DWORD error = ERROR_SUCCESS;
    const HMODULE module = load(path, error);
    if (module != nullptr) {
        FreeLibrary(module);
        return std::string();
    }
    return systemMessage(error);
}

std::string moduleFileName(ModuleHandle module) {
    if (module == nullptr) return std::string();
    std::string name(MAX_PATH, '\0');
    for (;;) {
        const DWORD length =
            GetModuleFileNameA(static_cast<HMODULE>(module), &name[0], static_cast<DWORD>(name.size()));
        if (length == 0) return std::string();
        if (length < name.size()) {
            name.resize(length);
            break;
        }
        name.resize(name.size() * 2);  // truncated: a long path, try a larger buffer
    }
    // The loader keeps the name as it was asked for ("dir\\\\kvpvt64.dll", "..\\"); report the
    // file itself, as a full path with single separators.
    const DWORD needed = GetFullPathNameA(name.c_str(), 0, nullptr, nullptr);
    if (needed == 0) return name;
    std::string full(needed, '\0');
    const DWORD length = GetFullPathNameA(name.c_str(), needed, &full[0], nullptr);
    if (length == 0 || length >= needed) return name;
    full.resize(length);
    return full;
}

int enabledFloatingPointTraps() {
    unsigned int control = 0;
    if (_controlfp_s(&control, 0, 0) != 0) return 0;
    int traps = 0;
    for (const auto& [trap, mask] : trapMaskBits) {
        if ((control & mask) == 0) traps |= trap;
    }
    return traps;
}

void setEnabledFloatingPointTraps(int traps) {
    // Only the exception masks are written: rounding and precision control stay as they are.
    unsigned int masks = 0;
    for (const auto& [trap, mask] : trapMaskBits) {
        if ((traps & trap) == 0) masks |= mask;
    }
    unsigned int control = 0;
    _controlfp_s(&control, masks, _MCW_EM);
}

}  // namespace platform
}  // namespace korvane
