// The entry points of the reference engine (korvane/EngineAbi.h) over EngineContext. No C++
// exception leaves them: every failure becomes an error code.
#include <korvane/EngineAbi.h>

#include "EngineCodes.h"
#include "EngineContext.h"

#include <new>

using korvane::reference::BrineVolume;
using korvane::reference::EngineContext;
namespace codes = korvane::reference;

struct KvpvtContext {
    EngineContext engine;
};

namespace {

/// The caller's error array for one call; starts empty.
class ErrorReport {
public:
    ErrorReport(int32_t* count, int32_t* codes) : count_(count), codes_(codes) {
        if (count_ != nullptr) *count_ = 0;
    }
    /// Appends `code` unless it is 0; codes beyond the array's capacity are dropped.
    void add(int32_t code) {
        if (code == 0 || count_ == nullptr || codes_ == nullptr || *count_ >= KVPVT_ERROR_CAPACITY) return;
        codes_[(*count_)++] = code;
    }

private:
    int32_t* count_;
    int32_t* codes_;
};

/// Runs `operation` on the engine of `context` and reports the code it returns.
template <typename Operation>
void run(KvpvtContext* context, ErrorReport& report, Operation operation) {
    if (context == nullptr) return report.add(codes::NoContext);
    try {
        report.add(operation(context->engine));
    } catch (const std::bad_alloc&) {
        report.add(codes::OutOfMemory);
    } catch (...) {
        report.add(codes::InternalError);
    }
}

}  // namespace

extern "C" {

KvpvtContext* kvpvt_context_create(int32_t* errorCount, int32_t* errorCodes) {
    ErrorReport report(errorCount, errorCodes);
    KvpvtContext* context = new (std::nothrow) KvpvtContext();
    if (context == nullptr) report.add(codes::OutOfMemory);
    return context;
}

void kvpvt_context_destroy(KvpvtContext* context) { delete context; }

void kvpvt_load_component(KvpvtContext* context, const char* name, int32_t* componentIndex, int32_t* errorCount,
                          int32_t* errorCodes) {
    ErrorReport report(errorCount, errorCodes);
    if (componentIndex == nullptr) return report.add(codes::MissingOutput);
    run(context, report, [&](EngineContext& engine) { return engine.loadComponent(name, *componentIndex); });
}

void kvpvt_add_bip_set(KvpvtContext* context, const char* name, int32_t* errorCount, int32_t* errorCodes) {
    ErrorReport report(errorCount, errorCodes);
    run(context, report, [&](EngineContext& engine) { return engine.addBipSet(name); });
}

void kvpvt_add_model(KvpvtContext* context, const char* name, int32_t* errorCount, int32_t* errorCodes) {
    ErrorReport report(errorCount, errorCodes);
    run(context, report, [&](EngineContext& engine) { return engine.addModel(name); });
}

void kvpvt_load_salt_density_model(KvpvtContext* context, const char* name, int32_t* errorCount,
                                   int32_t* errorCodes) {
    ErrorReport report(errorCount, errorCodes);
    run(context, report, [&](EngineContext& engine) { return engine.loadSaltDensityModel(name); });
}

void kvpvt_add_phase(KvpvtContext* context, const char* name, int32_t solventIndex, int32_t* phaseIndex,
                     int32_t* errorCount, int32_t* errorCodes) {
    ErrorReport report(errorCount, errorCodes);
    if (phaseIndex == nullptr) return report.add(codes::MissingOutput);
    run(context, report, [&](EngineContext& engine) { return engine.addPhase(name, solventIndex, *phaseIndex); });
}

void kvpvt_evaluate(KvpvtContext* context, double temperature, double pressure, const double* amounts,
                    int32_t amountCount, int32_t* errorCount, int32_t* errorCodes) {
    ErrorReport report(errorCount, errorCodes);
    run(context, report, [&](EngineContext& engine) {
        const BrineVolume result = engine.evaluate(temperature, pressure, amounts, amountCount);
        if (result.pressureRaisedToSaturation) report.add(codes::PressureRaisedToSaturation);
        if (result.molalityExtrapolated) report.add(codes::MolalityExtrapolated);
        return result.error;
    });
}

void kvpvt_phase_volume(KvpvtContext* context, int32_t phaseIndex, double* volume, int32_t* errorCount,
                        int32_t* errorCodes) {
    ErrorReport report(errorCount, errorCodes);
    if (volume == nullptr) return report.add(codes::MissingOutput);
    run(context, report, [&](EngineContext& engine) { return engine.phaseVolume(phaseIndex, *volume); });
}

}  // extern "C"
