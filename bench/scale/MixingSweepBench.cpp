// The scale calculations on the example waters: a 101-point mixing sweep of seawater into a
// formation water, and one precipitation-potential report.
#include "brinecast/calculation/Calculator.h"
#include "brinecast/readers/AnalysisJsonReader.h"
#include "brinecast/readers/ComponentNames.h"

#include <korvane/Speciator.h>

#include <benchmark/benchmark.h>

#include <fstream>
#include <sstream>
#include <string>

namespace bc = korvane::Brinecast;
namespace cli = korvane::Brinecast::cli;

namespace {

const bc::Speciator& speciator() {
    static const bc::Speciator shared;
    return shared;
}

/// The library input of an example file, the way the program reads it; no density is given.
bc::Input example(const std::string& file) {
    std::ostringstream text;
    text << std::ifstream(std::string(BRINECAST_EXAMPLES) + "/" + file).rdbuf();
    const cli::ComponentNames names;
    const cli::Analysis analysis = cli::AnalysisJsonReader(names).read(text.str(), file).front();
    return cli::Calculator(BRINECAST_REFERENCE_ENGINE_DIR, std::nullopt).input(analysis, 0.0);
}

bc::SolveOptions debyeHuckel() {
    bc::SolveOptions options;
    options.activity = bc::ActivityModel::DebyeHuckel;
    return options;
}

/// The waters as read (the per-litre one converted with the engine's density once per sweep), or,
/// with range(1) = 1, converted to mol/kgw beforehand; then range(0) mixes.
void mixingSweep(benchmark::State& state) {
    const bool converted = state.range(1) == 1;
    bc::Input formation = example("north-sea-formation-water.json");
    bc::Input seawater = example("standard-seawater.json");
    if (converted) formation = speciator().molal(formation), seawater = speciator().molal(seawater);
    const auto points = static_cast<std::size_t>(state.range(0));
    bool converged = true;
    for (auto _ : state) {
        const auto results = speciator().mixingSweep(formation, seawater, points, {}, debyeHuckel());
        for (const bc::Result& r : results) converged = converged && r.diagnostics.converged;
        benchmark::DoNotOptimize(results.data());
    }
    state.counters["converged"] = converged;
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * points));
}

/// Saturation and precipitation potential of every mineral of the mid-way mix (barite, celestite,
/// calcite ... supersaturated).
void precipitationPotential(benchmark::State& state) {
    const bc::Input mixed = speciator().mix(example("north-sea-formation-water.json"),
                                            example("standard-seawater.json"), 0.5);
    std::size_t searched = 0;
    for (auto _ : state) {
        const auto potentials = speciator().precipitationPotential(mixed, debyeHuckel());
        searched = 0;
        for (const auto& p : potentials) searched += p.molPerKgw > 0.0 ? 1 : 0;
        benchmark::DoNotOptimize(potentials.data());
    }
    state.counters["supersaturated"] = static_cast<double>(searched);
}

}  // namespace

BENCHMARK(mixingSweep)->ArgNames({"points", "converted"})->Args({101, 0})->Args({101, 1})->Unit(benchmark::kMillisecond);
BENCHMARK(precipitationPotential)->Unit(benchmark::kMillisecond);
