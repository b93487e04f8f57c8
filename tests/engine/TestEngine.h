#pragma once
// The test controls of a test engine (test-engines/ScriptedEngine.cpp) that a bridge has loaded.

#include "engine/Platform.h"

#include <stdexcept>
#include <string>

/// The control function `name` of the test engine loaded from `libraryPath`. Takes one more
/// reference to the library, never released: a test engine stays loaded until the program ends.
template <typename Function>
Function testEngineControl(const std::string& libraryPath, const char* name) {
    void* address = korvane::platform::findSymbol(korvane::platform::openLibrary(libraryPath), name);
    if (address == nullptr) throw std::runtime_error("test engine " + libraryPath + " lacks " + name);
    return reinterpret_cast<Function>(address);
}
