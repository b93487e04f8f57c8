// Cost of the brine density of a per-litre analysis: one call forwarded through the engine bridge
// once its entry point is cached, and the whole density calculation over the reference engine.
#include "database/SpeciesModel.h"
#include "engine/KorvaneDll.h"
#include "engine/SaltDensityCalculator.h"

#include <benchmark/benchmark.h>

namespace {

void ForwardedEngineCall(benchmark::State& state) {
    korvane::KorvaneDll bridge;
    if (!bridge.loadOnce(BRINECAST_REFERENCE_ENGINE_DIR)) {
        state.SkipWithError("no reference engine in " BRINECAST_REFERENCE_ENGINE_DIR);
        return;
    }
    std::int32_t count = 0, codes[KVPVT_ERROR_CAPACITY];
    for (auto _ : state) {
        // Without a context the engine answers at once, so this is the bridge's own cost.
        bridge.addModel(nullptr, "MCPA", &count, codes);
        benchmark::DoNotOptimize(count);
    }
}
BENCHMARK(ForwardedEngineCall);

void SaltDensityOverReferenceEngine(benchmark::State& state) {
    const korvane::Brinecast::SpeciesModel model;
    korvane::Brinecast::Input input;
    input.dllPath = BRINECAST_REFERENCE_ENGINE_DIR;
    input.temperature = 353.15;  // K
    input.pressure = 10e6;       // Pa
    input.elements.assign({{"Na", 2000.0}, {"Cl", 2000.0}, {"Ca", 100.0}}, korvane::Brinecast::MmolPerL);
    korvane::Brinecast::SaltDensityCalculator calculator(input, model);
    for (auto _ : state) benchmark::DoNotOptimize(calculator.density());  // g/cm3
}
BENCHMARK(SaltDensityOverReferenceEngine);

}  // namespace
