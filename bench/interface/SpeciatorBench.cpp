// The Speciator beside run: the same brines through run and through a Speciator with the robust
// solver; inside one Speciator, the specified solver against the robust one (both skip the
// parsing, so the difference is the solver); what activities cost (ideal, Davies and
// Debye-Hückel side by side, one brine at a time and over 1000 random brines); what the saturation
// indices of the scale minerals cost inside a speciation (the "minerals/" rows time that step alone
// on a solved result; its share is the row over the matching "activity/" row); what the Pitzer
// model costs against the ideal robust speciation of the same brine ("pitzer/" rows; the formation
// water without its iron, which Pitzer cannot take beside carbonate); and batch throughput over
// 10 000 random brines.
#include "BrineCatalog.h"
#include "RandomBrines.h"
#include "minerals/MineralSet.h"

#include <korvane/Speciator.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <exception>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace bc = korvane::Brinecast;
using brinecast_test::NamedBrine;

namespace {

const bc::Speciator& speciator() {
    static const bc::Speciator shared;
    return shared;
}

bc::SolveOptions using_(bc::Method method, bc::ActivityModel activity = bc::ActivityModel::Ideal) {
    bc::SolveOptions options;
    options.method = method;
    options.activity = activity;
    return options;
}

const std::pair<const char*, bc::ActivityModel> kModels[] = {
    {"Ideal", bc::ActivityModel::Ideal},
    {"Davies", bc::ActivityModel::Davies},
    {"DebyeHuckel", bc::ActivityModel::DebyeHuckel},
};

const std::pair<const char*, bc::ActivityModel> kPitzerRows[] = {
    {"Ideal", bc::ActivityModel::Ideal},
    {"DebyeHuckel", bc::ActivityModel::DebyeHuckel},
    {"Pitzer", bc::ActivityModel::Pitzer},
};

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

void speciatorCalculation(benchmark::State& state, const bc::Input& input, const bc::SolveOptions& options) {
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
    const bc::SolveOptions options = using_(bc::Method::Robust, activity);
    for (auto _ : state) {
        for (const bc::Input& input : brines) benchmark::DoNotOptimize(speciator().speciate(input, options).output.pH);
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * brines.size()));
}

/// The conditions the library evaluates an analysis at: 0 or less means 298.15 K and 101325 Pa.
double orDefault(double value, double fallback) { return value > 0.0 ? value : fallback; }

/// The saturation step alone, on results solved once beforehand.
void mineralSaturation(benchmark::State& state, std::vector<bc::Input> inputs, bc::ActivityModel activity) {
    std::vector<bc::Result> results;
    for (const bc::Input& input : inputs) results.push_back(speciator().speciate(input, using_(bc::Method::Robust, activity)));
    const bc::MineralSet& minerals = bc::MineralSet::embedded();
    double listed = 0.0;
    for (auto _ : state) {
        for (std::size_t i = 0; i < inputs.size(); ++i) {
            const auto saturation = minerals.saturation(results[i], orDefault(inputs[i].temperature, 298.15),
                                                        orDefault(inputs[i].pressure, 101325.0));
            listed += static_cast<double>(saturation.size());
            benchmark::DoNotOptimize(saturation.data());
        }
    }
    state.counters["minerals"] = listed / static_cast<double>(state.iterations() * inputs.size());  // per brine
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * inputs.size()));
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
                                     brine.input, using_(bc::Method::Robust))
            ->Unit(benchmark::kMicrosecond);
        benchmark::RegisterBenchmark(("compare/" + brine.name + "/Speciator-Specified").c_str(), speciatorCalculation,
                                     brine.input, using_(bc::Method::Specified))
            ->Unit(benchmark::kMicrosecond);
        benchmark::RegisterBenchmark(("compare/" + brine.name + "/Speciator-Auto").c_str(), speciatorCalculation,
                                     brine.input, using_(bc::Method::Auto))
            ->Unit(benchmark::kMicrosecond);
        for (const auto& [name, model] : kModels) {
            benchmark::RegisterBenchmark(("activity/" + brine.name + "/" + name).c_str(), speciatorCalculation,
                                         brine.input, using_(bc::Method::Robust, model))
                ->Unit(benchmark::kMicrosecond);
            benchmark::RegisterBenchmark(("minerals/" + brine.name + "/" + name).c_str(), mineralSaturation,
                                         std::vector<bc::Input>{brine.input}, model)
                ->Unit(benchmark::kMicrosecond);
        }
    }
    for (const NamedBrine& brine : brines) {
        if (brine.name != "formation-water" && brine.name != "hypersaline-5-molal") continue;
        bc::Input input = brine.input;
        std::vector<bc::NameValue>& elements = input.elements.values;
        elements.erase(std::remove_if(elements.begin(), elements.end(),
                                      [](const bc::NameValue& e) { return e.name == "Fe(+2)"; }),
                       elements.end());
        for (const auto& [name, model] : kPitzerRows) {
            benchmark::RegisterBenchmark(("pitzer/" + brine.name + "-without-iron/" + name).c_str(), speciatorCalculation,
                                         input, using_(bc::Method::Robust, model))
                ->Unit(benchmark::kMicrosecond);
        }
    }
    for (const auto& [name, model] : kModels) {
        benchmark::RegisterBenchmark((std::string("activity/1000-random-brines/") + name).c_str(), randomBrines, model)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark((std::string("minerals/1000-random-brines/") + name).c_str(), mineralSaturation,
                                     brinecast_test::randomBrines(1000, 11), model)
            ->Unit(benchmark::kMillisecond);
    }
    auto* throughput = benchmark::RegisterBenchmark("batch/10000-random-brines/Robust/threads", batch);
    throughput->Unit(benchmark::kMillisecond)->UseRealTime()->Arg(1)->Arg(2);
    const unsigned cores = std::thread::hardware_concurrency();
    if (cores > 2) throughput->Arg(cores);
    return 0;
}

[[maybe_unused]] const int registered = registerBenchmarks();

}  // namespace
