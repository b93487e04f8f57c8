#pragma once
// The test controls of a scripted test engine (test-engines/ScriptedEngine.cpp) that the bridge
// has loaded: what was called, and which step is to fail.

#include "engine/Platform.h"

#include <gtest/gtest.h>

#include <string>

class TestEngine {
public:
    /// Takes a reference to the already loaded library at `libraryPath`.
    explicit TestEngine(const std::string& libraryPath) : module_(korvane::platform::openLibrary(libraryPath)) {
        EXPECT_NE(module_, nullptr) << "test engine " << libraryPath << " does not load";
    }
    ~TestEngine() { korvane::platform::closeLibrary(module_); }
    TestEngine(const TestEngine&) = delete;
    TestEngine& operator=(const TestEngine&) = delete;

    /// Every engine call so far, "create;component WATER;...;destroy".
    std::string callLog() const { return function<const char* (*)()>("kvtest_call_log")(); }
    /// Makes the call whose log entry starts with `step` fail from now on; clears the log.
    void failAt(const char* step) const { function<void (*)(const char*)>("kvtest_fail_at")(step); }
    /// The traps the engine left enabled at the end of its start-up code (FE_* bits).
    int trapsAfterLoad() const { return function<int (*)()>("kvtest_traps_after_load")(); }

private:
    template <typename Function>
    Function function(const char* name) const {
        void* address = korvane::platform::findSymbol(module_, name);
        if (address == nullptr) throw std::runtime_error(std::string("test engine lacks ") + name);
        return reinterpret_cast<Function>(address);
    }

    korvane::platform::ModuleHandle module_;
};
