#include "brinecast/EngineLocator.h"

#include <limits.h>
#include <unistd.h>

#include <fstream>

namespace korvane::Brinecast::cli {
namespace {

std::string programDirectory() {
    char path[PATH_MAX];
    const ssize_t n = readlink("/proc/self/exe", path, sizeof path - 1);
    if (n <= 0) return ".";
    const std::string file(path, static_cast<std::size_t>(n));
    const auto slash = file.find_last_of('/');
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
