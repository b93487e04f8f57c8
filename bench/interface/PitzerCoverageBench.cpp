// What the Pitzer coverage query costs beside the speciation it decides: the program's default
// --activity auto asks it once per analysis (and per row of a batch), so it must stay a small
// share of even the cheapest speciation. Over 1000 random brines, the query alone and a
// Debye–Hückel speciation of the same brines.
#include "RandomBrines.h"

#include <korvane/Brinecast.h>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <exception>
#include <vector>

namespace bc = korvane::Brinecast;

namespace {

const std::vector<bc::Input>& brines() {
    static const std::vector<bc::Input> inputs = brinecast_test::randomBrines(1000, 7);
    return inputs;
}

void coverageQuery(benchmark::State& state) {
    std::int64_t covered = 0;
    for (auto _ : state) {
        for (const bc::Input& input : brines()) covered += bc::pitzerCoverage(input).covered() ? 1 : 0;
    }
    benchmark::DoNotOptimize(covered);
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(brines().size()));
}

void debyeHuckelSpeciation(benchmark::State& state) {
    static const bc::Speciator speciator;
    bc::SolveOptions options;
    options.activity = bc::ActivityModel::DebyeHuckel;
    for (auto _ : state) {
        for (const bc::Input& input : brines()) {
            try {
                benchmark::DoNotOptimize(speciator.speciate(input, options));
            } catch (const std::exception&) {
                // A random brine the data refuse costs what it costs; it is counted all the same.
            }
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(brines().size()));
}

}  // namespace

BENCHMARK(coverageQuery)->Name("pitzerCoverage/query/1000-random-brines")->Unit(benchmark::kMillisecond);
BENCHMARK(debyeHuckelSpeciation)->Name("pitzerCoverage/debye-huckel-speciation/1000-random-brines")->Unit(benchmark::kMillisecond);
