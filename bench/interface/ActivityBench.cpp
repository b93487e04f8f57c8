// What activities cost: the robust speciation of the same brines with ideal, Davies and
// Debye-Hückel activities side by side, in one Speciator so that only the solve differs, and the
// three models over 1000 random brines (fresh to 6 mol/kgw, 0-200 degC).
#include "BrineCatalog.h"
#include "RandomBrines.h"

#include <korvane/Speciator.h>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace bc = korvane::Brinecast;
using brinecast_test::NamedBrine;

namespace {

const bc::Speciator& speciator() {
    static const bc::Speciator shared;
    return shared;
}

const std::pair<const char*, bc::ActivityModel> kModels[] = {
    {"Ideal", bc::ActivityModel::Ideal},
    {"Davies", bc::ActivityModel::Davies},
    {"DebyeHuckel", bc::ActivityModel::DebyeHuckel},
};

bc::SolveOptions robustWith(bc::ActivityModel activity) {
    bc::SolveOptions options;
    options.method = bc::Method::Robust;
    options.activity = activity;
    return options;
}

void oneBrine(benchmark::State& state, const bc::Input& input, bc::ActivityModel activity) {
    const bc::SolveOptions options = robustWith(activity);
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

void randomBrines(benchmark::State& state, bc::ActivityModel activity) {
    static const std::vector<bc::Input> brines = brinecast_test::randomBrines(1000, 11);
    const bc::SolveOptions options = robustWith(activity);
    for (auto _ : state) {
        for (const bc::Input& input : brines) benchmark::DoNotOptimize(speciator().speciate(input, options).output.pH);
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * brines.size()));
}

int registerBenchmarks() {
    std::vector<NamedBrine> brines = brinecast_test::loadBrines(BRINECAST_TEST_BRINES, "unused-engine-dir");
    for (const NamedBrine& brine : brinecast_test::loadBrines(BRINECAST_TEST_HYPERSALINE_BRINES, "unused-engine-dir")) {
        if (brine.name == "hypersaline-5-molal") brines.push_back(brine);
    }
    for (const NamedBrine& brine : brines) {
        if (brine.name == "sour-water") continue;  // needs the density engine
        for (const auto& [name, model] : kModels) {
            benchmark::RegisterBenchmark(("activity/" + brine.name + "/" + name).c_str(), oneBrine, brine.input, model)
                ->Unit(benchmark::kMicrosecond);
        }
    }
    for (const auto& [name, model] : kModels) {
        benchmark::RegisterBenchmark((std::string("activity/1000-random-brines/") + name).c_str(), randomBrines, model)
            ->Unit(benchmark::kMillisecond);
    }
    return 0;
}

[[maybe_unused]] const int registered = registerBenchmarks();

}  // namespace
