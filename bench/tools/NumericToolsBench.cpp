// Cost of the numeric core of one speciation: the linear step and the whole Newton run, at the
// orders that brines of 2 to 20 basis components give.
#include "tools/CombinedSolver.h"
#include "tools/NewtonRaphsonEstimatedJacobian.h"
#include "tools/ValueArray.h"
#include "tools/ValueMatrix.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <random>
#include <vector>

using korvane::ValueArray;
using korvane::tools::CombinedSolver;
using korvane::tools::NewtonOutcome;
using korvane::tools::NewtonRaphsonEstimatedJacobian;
using korvane::tools::NewtonSettings;
using korvane::tools::ResidualFunction;
using korvane::tools::ValueMatrix;

namespace {

/// A dense random matrix with a heavy diagonal: what a Jacobian of coupled mass balances looks like.
ValueMatrix jacobianLike(std::uint64_t n) {
    std::mt19937_64 rng(7);
    std::uniform_real_distribution<double> element(-1.0, 1.0);
    ValueMatrix a(n, n);
    for (std::uint64_t i = 0; i < n; ++i) {
        for (std::uint64_t j = 0; j < n; ++j) a(i, j) = element(rng) + (i == j ? double(n) : 0.0);
    }
    return a;
}

void FactorizeAndSolve(benchmark::State& state) {
    const auto n = static_cast<std::uint64_t>(state.range(0));
    const ValueMatrix a = jacobianLike(n);
    ValueArray b(n);
    ValueArray x(n);
    for (std::uint64_t i = 0; i < n; ++i) b[i] = 1.0 + double(i);
    CombinedSolver solver;
    for (auto _ : state) {
        solver.factorize(a);
        solver.solve(b, x);
        benchmark::DoNotOptimize(x.data());
    }
}
BENCHMARK(FactorizeAndSolve)->Arg(2)->Arg(3)->Arg(5)->Arg(10)->Arg(20);

/// Mass-action-like residuals: x(i)·(1 + Σx) − c(i), with totals c from 1e-3 to 1 mol/kgw.
struct CoupledBalances {
    std::vector<double> totals;
    void operator()(const ValueArray& x, ValueArray& out) const {
        out.resize(x.size());
        double sum = 0.0;
        for (std::uint64_t j = 0; j < x.size(); ++j) sum += x[j];
        for (std::uint64_t i = 0; i < x.size(); ++i) out[i] = x[i] * (1.0 + sum) - totals[i];
    }
};

void NewtonRun(benchmark::State& state) {
    const auto n = static_cast<std::uint64_t>(state.range(0));
    CoupledBalances balances;
    for (std::uint64_t i = 0; i < n; ++i) balances.totals.push_back(i % 2 ? 1e-3 : 1.0);
    // Held by pointer: the solver copies the callable once per iteration.
    const CoupledBalances* held = &balances;
    const ResidualFunction f = [held](const ValueArray& x, ValueArray& out) { (*held)(x, out); };
    NewtonSettings settings;
    settings.trials = 1000;
    settings.stepTolerance = 1e-18;
    settings.staleLimit = 5;
    settings.residualBound = 1e-6;
    settings.residualTolerance = 1e-18;
    settings.maxRelativeStep = 0.5;
    settings.jacobianScale = 1e-10;
    std::uint64_t iterations = 0;
    int ending = 0;
    for (auto _ : state) {
        ValueArray x(n);
        for (std::uint64_t i = 0; i < n; ++i) x[i] = 0.01;
        const NewtonOutcome outcome = NewtonRaphsonEstimatedJacobian().iterate(f, x, settings);
        iterations = outcome.iterations;
        ending = static_cast<int>(outcome.ending);
        benchmark::DoNotOptimize(x.data());
    }
    state.counters["iterations"] = double(iterations);
    state.counters["ending"] = ending;  // NewtonEnding: 0 converged, 1 best point, 2 small step
}
BENCHMARK(NewtonRun)->Arg(2)->Arg(3)->Arg(5)->Arg(10)->Arg(20);

}  // namespace
