#pragma once

#include <string>

namespace korvane::Brinecast::cli {

/// Finds the reference engine library that was built or installed with this program, so that
/// per-litre analyses work without being told where it is.
class EngineLocator {
public:
    /// The file the library loads first from an engine directory.
    static constexpr const char* kLibraryFile = "kvpvt64.dll";

    /// Next to an installed program: <prefix>/lib/brinecast/engines/reference. In the build
    /// tree: the directory the reference engine was built in. When neither holds the engine,
    /// the program's own directory: calculations that need no density still run, and one that
    /// does fails with a message saying how to point at an engine.
    static std::string defaultDirectory();
    static bool holdsEngine(const std::string& directory);
};

}  // namespace korvane::Brinecast::cli
