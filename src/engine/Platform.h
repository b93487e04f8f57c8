#pragma once
/// The few operating-system services the engine bridge needs, behind one seam: loading a shared
/// library and finding its entry points, and the floating-point exception traps.

#include <string>

namespace korvane {
namespace platform {

/// A loaded shared library; null when none.
using ModuleHandle = void*;

/// Opens the library file `path` with every import resolved at once, so that a missing import
/// fails here and not at some later call, and keeps its symbols out of the global scope.
/// Returns null when the file cannot be loaded.
ModuleHandle openLibrary(const std::string& path);

/// Drops one reference to `module`; null is ignored.
void closeLibrary(ModuleHandle module);

/// Address of the exported symbol `name` in `module`, or null. Null for a null module (never a
/// search of the whole process). The loader's error text is read and dropped.
void* findSymbol(ModuleHandle module, const char* name);

/// Why the library file `path` cannot be loaded, in the loader's own words (for example "cannot
/// open shared object file: No such file or directory"); empty when it loads. The library is
/// closed again before returning. For messages only: the bridge's own load decides.
std::string libraryLoadError(const std::string& path);

/// Canonical absolute file name of the loaded `module` (no "//", no "..", symlinks resolved);
/// empty when the loader cannot tell.
std::string moduleFileName(ModuleHandle module);

/// The floating-point exceptions whose traps are enabled, as FE_* bits. (A set bit means the
/// trap is on, the opposite sense of a Windows exception mask.)
int enabledFloatingPointTraps();

/// Enables the traps of exactly the FE_* bits in `traps` and disables all others; leaves the
/// sticky exception flags and the rounding mode alone.
void setEnabledFloatingPointTraps(int traps);

}  // namespace platform
}  // namespace korvane
