// The Speciator beside run: the same brines through run and through a Speciator with the robust
// solver; inside one Speciator, the specified solver against the robust one (both skip the
// parsing, so the difference is the solver); and batch throughput over 10 000 random brines.
#include "BrineCatalog.h"
#include "RandomBrines.h"

#include <korvane/Speciator.h>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <exception>
#include <string>
#include <thread>
#include <vector>

namespace bc = korvane::Brinecast;
using brinecast_test::NamedBrine;

namespace {

const bc::Speciator& speciator() {
    static const bc::Speciator shared;
    return shared;
}

bc::SolveOptions using_(bc::Method method) {
    bc::SolveOptions options;
    options.method = method;
    return options;
}

/// run, counting the calls that end in an exception (the trial limit on hypersaline brines).
void runCalculation(benchmark::State& state, const bc::Input& input) {
    std::int64_t failed = 0;
    for (auto _ : state) {
        try {
            benchmark::DoNotOptimize(bc::run(input));
        } catch (const std::exception&) {
            ++failed;
        }
    }
    state.counters["failed"] = static_cast<double>(failed) / static_cast<double>(state.iterations());
}

void speciatorCalculation(benchmark::State& state, const bc::Input& input, bc::Method method) {
    const bc::SolveOptions options = using_(method);
    bool converged = true;
    std::uint64_t iterations = 0;
    for (auto _ : state) {
        const bc::Result result = speciator().speciate(input, options);
        converged = converged && result.diagnostics.converged;
        iterations = result.diagnostics.iterations;
        benchmark::DoNotOptimize(result.output.pH);
    }
    state.counters["converged"] = converged;
    state.counters["iterations"] = static_cast<double>(iterations);
}

void batch(benchmark::State& state) {
    static const std::vector<bc::Input> brines = brinecast_test::randomBrines(10000, 7);
    const auto threads = static_cast<unsigned>(state.range(0));
    const bc::SolveOptions options = using_(bc::Method::Robust);
    for (auto _ : state) benchmark::DoNotOptimize(speciator().speciateBatch(brines, options, threads).data());
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * brines.size()));
}

int registerBenchmarks() {
    std::vector<NamedBrine> brines;
    for (const NamedBrine& brine : brinecast_test::loadBrines(BRINECAST_TEST_BRINES, "unused-engine-dir")) {
        if (brine.name != "sour-water") brines.push_back(brine);
    }
    for (const NamedBrine& brine : brinecast_test::loadBrines(BRINECAST_TEST_HYPERSALINE_BRINES, "unused-engine-dir")) {
        if (brine.name == "hypersaline-5-molal") brines.push_back(brine);
    }
    for (const NamedBrine& brine : brines) {
        benchmark::RegisterBenchmark(("compare/" + brine.name + "/run").c_str(), runCalculation, brine.input)
            ->Unit(benchmark::kMicrosecond);
        benchmark::RegisterBenchmark(("compare/" + brine.name + "/Speciator-Robust-default").c_str(), speciatorCalculation,
                                     brine.input, bc::Method::Robust)
            ->Unit(benchmark::kMicrosecond);
        benchmark::RegisterBenchmark(("compare/" + brine.name + "/Speciator-Specified").c_str(), speciatorCalculation,
                                     brine.input, bc::Method::Specified)
            ->Unit(benchmark::kMicrosecond);
        benchmark::RegisterBenchmark(("compare/" + brine.name + "/Speciator-Auto").c_str(), speciatorCalculation,
                                     brine.input, bc::Method::Auto)
            ->Unit(benchmark::kMicrosecond);
    }
    auto* throughput = benchmark::RegisterBenchmark("batch/10000-random-brines/Robust/threads", batch);
    throughput->Unit(benchmark::kMillisecond)->UseRealTime()->Arg(1)->Arg(2);
    const unsigned cores = std::thread::hardware_concurrency();
    if (cores > 2) throughput->Arg(cores);
    return 0;
}

[[maybe_unused]] const int registered = registerBenchmarks();

}  // namespace
