// A test engine whose every call is recorded and any one of whose steps can be made to fail.
// Built several times with different definitions:
//   KVTEST_WITHOUT_PHASE_VOLUME  lacks the entry point kvpvt_phase_volume
//   KVTEST_TRAPS_ON_LOAD         switches floating-point traps on while it is being loaded
//   KVTEST_UNRESOLVED_IMPORT     needs a function that no library defines, so it cannot load
// Its volume is 2e-5 m3 per mol of everything, so densities over it are easy to predict.
#include <korvane/EngineAbi.h>

#include "engine/Platform.h"

#include <cfenv>
#include <mutex>
#include <sstream>
#include <string>

struct KvpvtContext {
    int components = 0;
    double volumeM3 = 0.0;
};

namespace {

using korvane::platform::enabledFloatingPointTraps;
using korvane::platform::setEnabledFloatingPointTraps;

std::string callLog;      // "create;component WATER;...;destroy"
std::mutex callLogMutex;  // contexts are created on many threads at once, as a real engine allows
std::string failingStep;  // a call whose log entry starts with this fails with code 250
int trapsAfterLoad = -1;
bool unsettleFloatingPoint = false;  // every call switches traps on and rounds upwards

/// Logs `entry`; reports the informational codes -5 and 200, then 250 when this is the step that
/// must fail. Returns whether the call succeeded.
bool record(const std::string& entry, int32_t* count, int32_t* codes) {
    if (unsettleFloatingPoint) {
        setEnabledFloatingPointTraps(enabledFloatingPointTraps() | FE_DIVBYZERO | FE_INVALID);
        fesetround(FE_UPWARD);
    }
    {
        const std::lock_guard<std::mutex> lock(callLogMutex);
        callLog += (callLog.empty() ? "" : ";") + entry;
    }
    codes[0] = -5;
    codes[1] = 200;
    *count = 2;
    if (failingStep.empty() || entry.compare(0, failingStep.size(), failingStep) != 0) return true;
    codes[(*count)++] = 250;
    return false;
}

#ifdef KVTEST_TRAPS_ON_LOAD
__attribute__((constructor)) void switchTrapsOn() {
    setEnabledFloatingPointTraps(FE_DIVBYZERO | FE_INVALID);
    trapsAfterLoad = enabledFloatingPointTraps();
}
#endif

}  // namespace

#ifdef KVTEST_UNRESOLVED_IMPORT
extern "C" int kvtest_function_that_no_library_defines();
extern "C" KVPVT_ENGINE_EXPORT int kvtest_use_missing_import() { return kvtest_function_that_no_library_defines(); }
#endif

extern "C" {

// Test controls, found by the tests through the platform seam.
KVPVT_ENGINE_EXPORT const char* kvtest_call_log() { return callLog.c_str(); }
/// Makes the call whose log entry starts with `step` fail from now on, and clears the log.
KVPVT_ENGINE_EXPORT void kvtest_fail_at(const char* step) {
    failingStep = step;
    callLog.clear();
}
KVPVT_ENGINE_EXPORT int kvtest_traps_after_load() { return trapsAfterLoad; }
/// From now on every engine call switches traps on and sets the rounding mode upwards.
KVPVT_ENGINE_EXPORT void kvtest_unsettle_floating_point() { unsettleFloatingPoint = true; }

KvpvtContext* kvpvt_context_create(int32_t* count, int32_t* codes) {
    return record("create", count, codes) ? new KvpvtContext() : nullptr;
}
void kvpvt_context_destroy(KvpvtContext* context) {
    {
        const std::lock_guard<std::mutex> lock(callLogMutex);
        callLog += ";destroy";
    }
    delete context;
}
void kvpvt_load_component(KvpvtContext* context, const char* name, int32_t* index, int32_t* count, int32_t* codes) {
    if (record("component " + std::string(name), count, codes)) *index = context->components++;
}
void kvpvt_add_bip_set(KvpvtContext*, const char* name, int32_t* count, int32_t* codes) {
    record("bip " + std::string(name), count, codes);
}
void kvpvt_add_model(KvpvtContext*, const char* name, int32_t* count, int32_t* codes) {
    record("model " + std::string(name), count, codes);
}
void kvpvt_load_salt_density_model(KvpvtContext*, const char* name, int32_t* count, int32_t* codes) {
    record("saltmodel " + std::string(name), count, codes);
}
void kvpvt_add_phase(KvpvtContext*, const char* name, int32_t solvent, int32_t* phase, int32_t* count, int32_t* codes) {
    if (record("phase " + std::string(name) + " " + std::to_string(solvent), count, codes)) *phase = 3;
}
void kvpvt_evaluate(KvpvtContext* context, double temperature, double pressure, const double* amounts, int32_t amountCount,
                    int32_t* count, int32_t* codes) {
    std::ostringstream entry;  // 6 digits: "evaluate 310 200000 50 0.5"
    entry << "evaluate " << temperature << " " << pressure;
    double total = 0.0;
    for (int32_t i = 0; i < amountCount; ++i) {
        entry << " " << amounts[i];
        total += amounts[i];
    }
    if (record(entry.str(), count, codes)) context->volumeM3 = 2e-5 * total;
}
#ifndef KVTEST_WITHOUT_PHASE_VOLUME
void kvpvt_phase_volume(KvpvtContext* context, int32_t phase, double* volume, int32_t* count, int32_t* codes) {
    // Failing "zero volume" makes a faulty engine that reports no error and a volume of 0 m3.
    if (record("volume " + std::to_string(phase), count, codes)) *volume = failingStep == "zero volume" ? 0.0 : context->volumeM3;
}
#endif

}  // extern "C"
