// Linux implementation of the platform seam: dlopen/dlsym/dlinfo and the glibc trap control.
// (PlatformWindows.cpp is the Windows side; CMake builds one of the two.)
#include "engine/Platform.h"

#include <dlfcn.h>
#include <fenv.h>
#include <link.h>

#include <cstdlib>
#include <memory>

namespace korvane {
namespace platform {

ModuleHandle openLibrary(const std::string& path) {
    return dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
}

void closeLibrary(ModuleHandle module) {
    if (module != nullptr) dlclose(module);
}

void* findSymbol(ModuleHandle module, const char* name) {
    // A null handle must not fall through to a search of every library in the process.
    if (module == nullptr) return nullptr;
    void* address = dlsym(module, name);
    dlerror();
    return address;
}

std::string libraryLoadError(const std::string& path) {
    dlerror();
    void* module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (module != nullptr) {
        dlclose(module);
        return std::string();
    }
    const char* reason = dlerror();
    return reason != nullptr ? std::string(reason) : std::string("the loader gave no reason");
}

std::string moduleFileName(ModuleHandle module) {
    link_map* map = nullptr;
    if (module == nullptr || dlinfo(module, RTLD_DI_LINKMAP, &map) != 0 || map == nullptr ||
        map->l_name == nullptr) {
        dlerror();
        return std::string();
    }
    // The loader keeps the name as it was asked for ("dir//kvpvt64.dll"); report the file itself.
    const std::unique_ptr<char, decltype(&std::free)> canonical(realpath(map->l_name, nullptr), &std::free);
    return canonical ? std::string(canonical.get()) : std::string(map->l_name);
}

int enabledFloatingPointTraps() {
    const int traps = fegetexcept();
    return traps < 0 ? 0 : traps;
}

void setEnabledFloatingPointTraps(int traps) {
    // fesetenv would also restore the sticky flags and the rounding mode; only traps are ours.
    fedisableexcept(FE_ALL_EXCEPT & ~traps);
    feenableexcept(traps & FE_ALL_EXCEPT);
}

}  // namespace platform
}  // namespace korvane
