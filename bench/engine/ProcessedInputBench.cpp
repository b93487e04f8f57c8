// Input normalisation against the length of the analysis: the per-litre conversion sums, the
// merging of gases into elements and the repeated-basis check must each stay linear, so the time
// per entry has to stay flat from 10 to 20 000 entries (Google Benchmark fits the complexity).
#include "database/SpeciesModel.h"
#include "engine/ProcessedInput.h"

#include <benchmark/benchmark.h>

#include <stdexcept>
#include <vector>

namespace bc = korvane::Brinecast;

namespace {

const bc::SpeciesModel& model() {
    static const bc::SpeciesModel parsed;
    return parsed;
}

/// One element repeated in mg/L with a density given: the sums run over every entry, and the
/// repeated basis is found only at the end.
void RepeatedPerLitreEntries(benchmark::State& state) {
    const auto entries = static_cast<std::size_t>(state.range(0));
    bc::Input input;
    input.dllPath = "/no/engine/needed";
    input.density = 1.05;  // g/cm3
    input.elements.assign(std::vector<bc::NameValue>(entries, {"Na", 100.0}), bc::MgPerL);
    for (auto _ : state) {
        try {
            benchmark::DoNotOptimize(bc::processInput(input, model()));
        } catch (const std::logic_error&) {  // "A repeated basis found.", the expected ending
        }
    }
    state.SetComplexityN(state.range(0));
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * entries));
}
BENCHMARK(RepeatedPerLitreEntries)->RangeMultiplier(10)->Range(10, 10000)->Arg(20000)->Complexity();

/// One element and its gas given many times: every gas amount joins the element's total.
void RepeatedGasBesideItsElement(benchmark::State& state) {
    const auto entries = static_cast<std::size_t>(state.range(0));
    bc::Input input;
    input.dllPath = "/no/engine/needed";
    input.elements.assign({{"C", 0.01}, {"Na", 0.5}, {"Cl", 0.5}}, bc::MolPerKgw);
    input.gases.assign(std::vector<bc::NameValue>(entries, {"CO2", 1e-5}), bc::MolPerKgw);
    for (auto _ : state) benchmark::DoNotOptimize(bc::processInput(input, model()));
    state.SetComplexityN(state.range(0));
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * entries));
}
BENCHMARK(RepeatedGasBesideItsElement)->RangeMultiplier(10)->Range(10, 10000)->Arg(20000)->Complexity();

/// A seawater analysis: the everyday cost.
void SeawaterAnalysis(benchmark::State& state) {
    bc::Input input;
    input.dllPath = "/no/engine/needed";
    input.density = 1.025;  // g/cm3
    input.elements.assign({{"Na", 10770.0}, {"Mg", 1290.0}, {"Ca", 412.0}, {"K", 399.0}, {"Cl", 19350.0},
                           {"S(6)", 2710.0}, {"C", 142.0}},
                          bc::MgPerL);
    for (auto _ : state) benchmark::DoNotOptimize(bc::processInput(input, model()));
}
BENCHMARK(SeawaterAnalysis);

}  // namespace
