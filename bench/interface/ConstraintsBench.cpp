// What a measured pH, alkalinity and closing ion cost beside the charge balance: 1000 random
// brines per activity model, each with the pH and alkalinity its own charge-balanced speciation
// reports, so that every variant solves for the same answer ("activity/1000-random-brines/" in
// SpeciatorBench is the charge-balance row to compare with; Pitzer, which leaves out the brines
// it has no parameters for, has its own "charge-balance" row here).
#include "RandomBrines.h"

#include <korvane/Speciator.h>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace bc = korvane::Brinecast;

namespace {

const bc::Speciator& speciator() {
    static const bc::Speciator shared;
    return shared;
}

enum class Imposed { None, PH, PHAndAlkalinity, PHAndClosingChloride };

/// The brines the model takes, and per brine the constraints that give back its charge-balanced
/// speciation.
std::pair<std::vector<bc::Input>, std::vector<bc::Constraints>> measured(const bc::SolveOptions& options, Imposed imposed) {
    std::vector<bc::Input> inputs;
    std::vector<bc::Constraints> constraints;
    for (const bc::Input& input : brinecast_test::randomBrines(1000, 11)) {
        bc::Result balanced;
        try {
            balanced = speciator().speciate(input, options);
        } catch (const std::invalid_argument&) {
            continue;  // components Pitzer has no parameters for
        }
        inputs.push_back(input);
        bc::Constraints c;
        if (imposed == Imposed::None) {
            constraints.push_back(c);
            continue;
        }
        c.pH = balanced.output.pH;
        if (imposed == Imposed::PHAndAlkalinity) c.alkalinity = balanced.alkalinity;
        if (imposed == Imposed::PHAndClosingChloride) c.balanceWith = "Cl";
        constraints.push_back(c);
    }
    return {std::move(inputs), std::move(constraints)};
}

void constrainedBrines(benchmark::State& state, bc::ActivityModel activity, Imposed imposed) {
    bc::SolveOptions options;
    options.activity = activity;
    const auto [inputs, constraints] = measured(options, imposed);
    std::int64_t failed = 0;
    for (auto _ : state) {
        for (std::size_t i = 0; i < inputs.size(); ++i) {
            try {
                const bc::Result result = speciator().speciate(inputs[i], constraints[i], options);
                failed += result.diagnostics.converged ? 0 : 1;
                benchmark::DoNotOptimize(result.output.pH);
            } catch (const std::exception&) {
                ++failed;  // a brine without chloride cannot close on it
            }
        }
    }
    state.counters["failed"] = static_cast<double>(failed) / static_cast<double>(state.iterations());
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * inputs.size()));
}

int registerBenchmarks() {
    const std::pair<const char*, bc::ActivityModel> models[] = {
        {"Ideal", bc::ActivityModel::Ideal},
        {"Davies", bc::ActivityModel::Davies},
        {"DebyeHuckel", bc::ActivityModel::DebyeHuckel},
        {"Pitzer", bc::ActivityModel::Pitzer},
    };
    const std::pair<const char*, Imposed> variants[] = {
        {"pH", Imposed::PH},
        {"pH+alkalinity", Imposed::PHAndAlkalinity},
        {"pH+closing-Cl", Imposed::PHAndClosingChloride},
    };
    for (const auto& [model, activity] : models) {
        for (const auto& [variant, imposed] : variants) {
            benchmark::RegisterBenchmark((std::string("constraints/1000-random-brines/") + model + "/" + variant).c_str(),
                                         constrainedBrines, activity, imposed)
                ->Unit(benchmark::kMillisecond);
        }
    }
    benchmark::RegisterBenchmark("constraints/1000-random-brines/Pitzer/charge-balance", constrainedBrines,
                                 bc::ActivityModel::Pitzer, Imposed::None)
        ->Unit(benchmark::kMillisecond);
    return 0;
}

[[maybe_unused]] const int registered = registerBenchmarks();

}  // namespace
