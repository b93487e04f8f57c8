#include "tools/NewtonRaphsonEstimatedJacobian.h"

#include "tools/TestMatrices.h"

#include <korvane/KorvaneError.h>

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstring>
#include <functional>
#include <vector>

using namespace korvane::tools;
using korvane::ValueArray;
using korvane::tools::test::array;

// NewtonSettings{trials, stepTolerance, staleLimit, residualBound, residualTolerance,
//                maxRelativeStep, jacobianScale} throughout.

namespace {

/// 2^-10: x + h and the differences of the linear test functions are exact in binary.
constexpr double kExactStep = 0.0009765625;
using Equation = std::function<double(const ValueArray&)>;

/// One residual per equation; `calls` counts every evaluation and those given an empty output.
ResidualFunction system(std::vector<Equation> equations, std::uint64_t* calls = nullptr, std::uint64_t* empty = nullptr) {
    return [equations, calls, empty](const ValueArray& x, ValueArray& out) {
        if (calls) ++*calls, *empty += out.size() == 0;
        out.resize(equations.size());
        for (std::size_t i = 0; i < equations.size(); ++i) out[i] = equations[i](x);
    };
}

/// Root (2, 3) in closed form; with a third equation, (2, 3, 4) through the LU path.
ResidualFunction knownRoot(std::size_t n, std::uint64_t* calls = nullptr, std::uint64_t* empty = nullptr) {
    std::vector<Equation> eq = {[](const ValueArray& x) { return x[0] * x[0] - 4.0; },
                                [](const ValueArray& x) { return x[0] * x[1] - 6.0; },
                                [](const ValueArray& x) { return x[1] * x[2] - 12.0; }};
    eq.resize(n);
    return system(eq, calls, empty);
}

/// What the ten-argument solve leaves: x, trials, the norm (-1 if never written), and whether
/// it threw the trial-limit error.
struct Solved { ValueArray x; std::uint64_t trials; double norm; bool threw; };
Solved solve(const ResidualFunction& f, ValueArray x, const NewtonSettings& s) {
    Solved r{std::move(x), s.trials, -1.0, false};
    try {
        NewtonRaphsonEstimatedJacobian().solve(f, r.trials, r.x, s.stepTolerance, s.staleLimit, s.residualBound,
                                               s.residualTolerance, &r.norm, s.maxRelativeStep, s.jacobianScale);
    } catch (const korvane::KorvaneError& e) {
        EXPECT_STREQ(e.what(), "Number of trials exceeded without finding a solution.");
        r.threw = true;
    }
    return r;
}

bool sameBits(const ValueArray& a, const ValueArray& b) {
    return a.size() == b.size() && (a.size() == 0 || std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0);
}

}  // namespace

TEST(NewtonRaphsonEstimatedJacobian, SolvesKnownRootsAndCountsEvaluations) {
    for (std::size_t n : {2u, 3u}) {
        std::uint64_t calls = 0, empty = 0;
        Solved r = solve(knownRoot(n, &calls, &empty), n == 2 ? array({1, 1}) : array({1, 1, 1}),
                         NewtonSettings{100, 0.0, 5, 1e300, 1e-10, 0.5, 1e-7});
        EXPECT_LE(r.norm, 1e-10);
        EXPECT_GT(r.trials, 2u);  // the damped first steps cannot reach the root at once
        for (std::size_t i = 0; i < n; ++i) EXPECT_NEAR(r.x[i], 2.0 + i, 1e-9) << "unknown " << i;
        EXPECT_EQ(calls, (r.trials + 1) * (n + 1));  // n + 1 residuals per Jacobian
        EXPECT_EQ(empty, (r.trials + 1) * n);        // the perturbed ones get an empty array

        // A start at the tolerance returns before any step.
        calls = 0;
        const ValueArray root = n == 2 ? array({2, 3}) : array({2, 3, 4});
        r = solve(knownRoot(n, &calls, &empty), root, NewtonSettings{100, -1.0, 5, 1e300, 0.0, 0.5, 1e-7});
        EXPECT_EQ(r.trials, 0u);
        EXPECT_TRUE(sameBits(r.x, root));
        EXPECT_EQ(calls, n + 1);
    }
}

TEST(NewtonRaphsonEstimatedJacobian, TrialLimitKeepsTheLastIterateAndLastNorm) {
    struct Case { const char* what; ResidualFunction f; ValueArray start; std::uint64_t trials; ValueArray end; double norm; };
    const std::vector<Case> cases = {
        // dx = (−4, +1); unknown 0 may move 0.5 of 4, so λ = 0.125 scales both.
        {"damped step", system({[](const ValueArray& x) { return x[0] + 3.0; }, [](const ValueArray& x) { return x[1] - 2.0; }}),
         array({1, 1}), 1, array({0.5, 1.125}), 5.0},
        // An unknown at 0 forbids every step; equal norms never count as stale.
        {"unknown at zero", system({[](const ValueArray& x) { return x[0] - 1.0; }}), array({0}), 20, array({0}), 1.0},
        // A limit of 0 throws before the first evaluation: the norm is never written.
        {"no trials", knownRoot(2), array({1, 1}), 0, array({1, 1}), -1.0},
    };
    for (const Case& c : cases) {
        const Solved r = solve(c.f, c.start, NewtonSettings{c.trials, 0.0, 5, 1e300, 0.0, 0.5, kExactStep});
        EXPECT_TRUE(r.threw) << c.what;
        EXPECT_TRUE(sameBits(r.x, c.end)) << c.what;
        EXPECT_EQ(r.norm, c.norm) << c.what;
        EXPECT_EQ(r.trials, c.trials) << c.what;  // not written on the error
    }
}

// Every ending looks the same through solve and iterate, down to the last bit of x and the norm.
// Newton on atan(x) from 1.5 overshoots further every step, so after the first point the norm
// only grows: the stale rule restores it (equality with the bound qualifies); with no stale
// allowance and nothing under the bound, x comes back empty. A small step ends after that step
// with the norm before it.
TEST(NewtonRaphsonEstimatedJacobian, SolveAndIterateAgreeOnEveryEnding) {
    const ResidualFunction atan = system({[](const ValueArray& x) { return std::atan(x[0]); }});
    const ResidualFunction line = system({[](const ValueArray& x) { return x[0] - 1.0; }});
    struct Case { NewtonEnding ending; ResidualFunction f; ValueArray start; NewtonSettings s; std::uint64_t trials; ValueArray end; double norm; };
    const std::vector<Case> cases = {
        {NewtonEnding::BestPoint, atan, array({1.5}), NewtonSettings{100, 0, 5, std::atan(1.5), 0, 0, 1e-7}, 5, array({1.5}), std::atan(1.5)},
        {NewtonEnding::BestPoint, atan, array({1.5}), NewtonSettings{100, 0, 0, 0.1, 0, 0, 1e-7}, 0, ValueArray(), DBL_MAX},
        {NewtonEnding::SmallStep, line, array({0}), NewtonSettings{100, 10.0, 5, 1e300, 0, 0, kExactStep}, 0, array({1}), 1.0},
        {NewtonEnding::Converged, knownRoot(3), array({1, 1, 1}), NewtonSettings{100, 0, 5, 1e300, 1e-10, 0.5, 1e-7}, 0, {}, NAN},
        {NewtonEnding::SmallStep, knownRoot(2), array({1, 1}), NewtonSettings{100, 1e-6, 5, 1e300, 0, 0.5, 1e-7}, 0, {}, NAN},
        {NewtonEnding::TrialLimit, knownRoot(2), array({1, 1}), NewtonSettings{4, 0, 5, 1e300, 0, 0.5, 1e-7}, 0, {}, NAN},
    };
    for (const Case& c : cases) {
        ValueArray viaIterate = c.start;
        const NewtonOutcome outcome = NewtonRaphsonEstimatedJacobian().iterate(c.f, viaIterate, c.s);
        EXPECT_EQ(outcome.ending, c.ending);
        const Solved r = solve(c.f, c.start, c.s);
        EXPECT_EQ(r.threw, c.ending == NewtonEnding::TrialLimit);
        EXPECT_EQ(r.threw ? c.s.trials : r.trials, outcome.iterations);
        EXPECT_TRUE(sameBits(r.x, viaIterate));
        EXPECT_EQ(std::memcmp(&r.norm, &outcome.residualNorm, sizeof r.norm), 0);
        if (std::isnan(c.norm)) continue;
        EXPECT_EQ(r.trials, c.trials);
        EXPECT_TRUE(sameBits(r.x, c.end));
        EXPECT_EQ(r.norm, c.norm);
    }
}

// ln(x) from 5: the first full Newton step lands at a negative x, where the residual is NaN.
TEST(NewtonRaphsonEstimatedJacobian, NaNResidualStopsOnlyWhenAsked) {
    const ResidualFunction f = system({[](const ValueArray& x) { return std::log(x[0]); }});
    NewtonSettings s{30, 0, 5, 1e300, 1e-12, 0.0, 1e-7};
    ValueArray x = array({5});
    EXPECT_EQ(NewtonRaphsonEstimatedJacobian().iterate(f, x, s).iterations, 30u);
    s.stopOnNaN = true;
    x = array({5});
    const NewtonOutcome outcome = NewtonRaphsonEstimatedJacobian().iterate(f, x, s);
    EXPECT_EQ(outcome.ending, NewtonEnding::NotANumber);
    EXPECT_EQ(outcome.iterations, 1u);
    EXPECT_LT(x[0], 0.0);  // the point that produced the NaN
}
