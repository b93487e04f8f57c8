#include "brinecast/calculation/EngineLocator.h"

#ifdef _WIN32
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>
#else
#include <limits.h>
#include <unistd.h>
#endif

#include <fstream>
#include <string>

namespace korvane::Brinecast::cli {
namespace {

/// Full file name of the running program, empty when the system cannot tell.
std::string programFile() {
#ifdef _WIN32
    std::string path(MAX_PATH, '\0');
    for (;;) {
        const DWORD n = GetModuleFileNameA(nullptr, &path[0], static_cast<DWORD>(path.size()));
        if (n == 0) return std::string();
        if (n < path.size()) return path.substr(0, n);
        path.resize(path.size() * 2);  // truncated: a long path, try a larger buffer
    }
#else
    char path[PATH_MAX];
    const ssize_t n = readlink("/proc/self/exe", path, sizeof path - 1);
    return n <= 0 ? std::string() : std::string(path, static_cast<std::size_t>(n));
#endif
}

std::string programDirectory() {
    const std::string file = programFile();
    if (file.empty()) return ".";
    // Windows accepts either separator, and its program names use the backslash.
    const auto slash = file.find_last_of("/\\");
    return slash == std::string::npos || slash == 0 ? "/" : file.substr(0, slash);
}

}  // namespace

bool EngineLocator::holdsEngine(const std::string& directory) {
    return std::ifstream(directory + "/" + kLibraryFile).good();
}

std::string EngineLocator::defaultDirectory() {
    const std::string program = programDirectory();
#ifdef BRINECAST_INSTALLED_ENGINE_DIR
    const std::string installed = program + "/" BRINECAST_INSTALLED_ENGINE_DIR;
    if (holdsEngine(installed)) return installed;
#endif
#ifdef BRINECAST_BUILD_ENGINE_DIR
    if (holdsEngine(BRINECAST_BUILD_ENGINE_DIR)) return BRINECAST_BUILD_ENGINE_DIR;
#endif
    return program;
}

}  // namespace korvane::Brinecast::cli
