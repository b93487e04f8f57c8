// Speciation of representative brines: the whole `run` (model construction included, as every
// host call pays it), the calculation on an already built model, model construction alone, and
// the N residual evaluations of one forward-difference Jacobian, the solver's main cost.
#include "BrineCatalog.h"
#include "database/SpeciesModel.h"
#include "interface/CalculationDriver.h"
#include "solver/ChargeBalanceEquationMaker.h"

#include <korvane/Brinecast.h>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <vector>

namespace bc = korvane::Brinecast;
using brinecast_test::NamedBrine;

namespace {

void runWholeCalculation(benchmark::State& state, const bc::Input& input) {
    for (auto _ : state) benchmark::DoNotOptimize(bc::run(input));
}

void solveOnBuiltModel(benchmark::State& state, const bc::Input& input) {
    bc::SpeciesModel model;
    for (auto _ : state) {
        bc::solveSpeciation(input, model);
        benchmark::DoNotOptimize(bc::assembleOutput(model));
    }
}

/// The residual evaluations of one forward-difference Jacobian at the solution: x, then x with
/// each unknown moved in turn. Time is per evaluation.
void evaluateResiduals(benchmark::State& state, const bc::Input& input) {
    bc::SpeciesModel model;
    bc::solveSpeciation(input, model);
    const bc::ChargeBalanceEquationMaker& equations = *model.equationMaker;
    korvane::ValueArray x(model.solution.size() - 1);
    for (std::size_t i = 0; i < x.size(); ++i) x[i] = model.solution[i + 1];
    korvane::ValueArray residuals, moved;
    for (auto _ : state) {
        equations.evaluate(x, residuals);
        benchmark::DoNotOptimize(residuals.data());
        for (std::size_t j = 0; j < x.size(); ++j) {
            moved = x;
            moved[j] += 1e-15;
            equations.evaluate(moved, residuals);
            benchmark::DoNotOptimize(residuals.data());
        }
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * (x.size() + 1)));
    state.counters["unknowns"] = static_cast<double>(x.size());
    state.counters["species"] = static_cast<double>(equations.speciesCount());
    state.counters["perEvaluation"] = benchmark::Counter(static_cast<double>(state.iterations() * (x.size() + 1)),
                                                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void constructModel(benchmark::State& state) {
    for (auto _ : state) {
        bc::SpeciesModel model;
        benchmark::DoNotOptimize(model.reactions.data());
    }
}

int registerBenchmarks() {
    benchmark::RegisterBenchmark("SpeciesModel/construction", constructModel)->Unit(benchmark::kMicrosecond);
    // No density is needed for the catalogue's units, so no engine directory either.
    for (const NamedBrine& brine : brinecast_test::loadBrines(BRINECAST_TEST_BRINES, "unused-engine-dir")) {
        benchmark::RegisterBenchmark(("run/" + brine.name).c_str(), runWholeCalculation, brine.input)
            ->Unit(benchmark::kMicrosecond);
        benchmark::RegisterBenchmark(("solveOnBuiltModel/" + brine.name).c_str(), solveOnBuiltModel, brine.input)
            ->Unit(benchmark::kMicrosecond);
        benchmark::RegisterBenchmark(("jacobianResiduals/" + brine.name).c_str(), evaluateResiduals, brine.input)
            ->Unit(benchmark::kMicrosecond);
    }
    return 0;
}

[[maybe_unused]] const int registered = registerBenchmarks();

}  // namespace
