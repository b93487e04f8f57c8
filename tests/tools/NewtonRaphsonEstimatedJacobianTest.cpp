#include "tools/NewtonRaphsonEstimatedJacobian.h"

#include "tools/TestMatrices.h"

#include <korvane/KorvaneError.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstring>
#include <functional>
#include <vector>

using namespace korvane::tools;
using korvane::KorvaneError;
using korvane::ValueArray;
using korvane::tools::test::array;
using testing::StrEq;
using testing::ThrowsMessage;

// NewtonSettings{trials, stepTolerance, staleLimit, residualBound, residualTolerance,
//                maxRelativeStep, jacobianScale} throughout.

namespace {

const char* const kTrialsExceeded = "Number of trials exceeded without finding a solution.";
/// 2^-10: x + h and the differences of the linear test functions are exact in binary.
constexpr double kExactStep = 0.0009765625;

/// Residual evaluations seen through every copy of one residual function.
struct Calls {
    std::uint64_t all = 0;
    std::uint64_t withEmptyOutput = 0;
};

/// One residual per equation, each a function of the whole x.
ResidualFunction system(std::vector<std::function<double(const ValueArray&)>> equations, Calls* calls = nullptr) {
    return [equations, calls](const ValueArray& x, ValueArray& out) {
        if (calls) ++calls->all, calls->withEmptyOutput += out.size() == 0;
        out.resize(equations.size());
        for (std::size_t i = 0; i < equations.size(); ++i) out[i] = equations[i](x);
    };
}

/// Root (2, 3) in closed form; with a third equation, (2, 3, 4) through the LU path.
ResidualFunction knownRoot(std::size_t n, Calls* calls) {
    std::vector<std::function<double(const ValueArray&)>> eq = {
        [](const ValueArray& x) { return x[0] * x[0] - 4.0; },
        [](const ValueArray& x) { return x[0] * x[1] - 6.0; },
        [](const ValueArray& x) { return x[1] * x[2] - 12.0; }};
    eq.resize(n);
    return system(eq, calls);
}

/// The ten-argument call with the arguments taken from `s`.
void solve(const ResidualFunction& f, std::uint64_t& trials, ValueArray& x, const NewtonSettings& s, double& norm) {
    NewtonRaphsonEstimatedJacobian().solve(f, trials, x, s.stepTolerance, s.staleLimit, s.residualBound,
                                           s.residualTolerance, &norm, s.maxRelativeStep, s.jacobianScale);
}

bool sameBits(const ValueArray& a, const ValueArray& b) {
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0;
}

}  // namespace

TEST(NewtonRaphsonEstimatedJacobian, SolvesKnownRootsAndCountsEvaluations) {
    for (std::size_t n : {2u, 3u}) {
        Calls calls;
        ValueArray x(n);
        for (std::size_t i = 0; i < n; ++i) x[i] = 1.0;
        std::uint64_t trials = 100;
        double norm = -1.0;
        solve(knownRoot(n, &calls), trials, x, NewtonSettings{trials, 0.0, 5, 1e300, 1e-10, 0.5, 1e-7}, norm);
        EXPECT_LE(norm, 1e-10);
        EXPECT_GT(trials, 2u);  // the damped first steps cannot reach the root at once
        for (std::size_t i = 0; i < n; ++i) EXPECT_NEAR(x[i], 2.0 + i, 1e-9) << "unknown " << i;
        EXPECT_EQ(calls.all, (trials + 1) * (n + 1));  // n + 1 residuals per Jacobian
        EXPECT_EQ(calls.withEmptyOutput, (trials + 1) * n);  // the perturbed ones get an empty array

        calls = Calls();
        const ValueArray root = n == 2 ? array({2, 3}) : array({2, 3, 4});
        x = root;
        solve(knownRoot(n, &calls), trials = 100, x, NewtonSettings{100, -1.0, 5, 1e300, 0.0, 0.5, 1e-7}, norm);
        EXPECT_EQ(trials, 0u);  // a start at the tolerance returns before any step
        EXPECT_TRUE(sameBits(x, root));
        EXPECT_EQ(calls.all, n + 1);
    }
}

TEST(NewtonRaphsonEstimatedJacobian, TrialLimitKeepsTheLastIterateAndLastNorm) {
    struct Case { const char* what; ResidualFunction f; ValueArray start; std::uint64_t trials; ValueArray end; double norm; };
    const std::vector<Case> cases = {
        // dx = (−4, +1); unknown 0 may move 0.5 of 4, so λ = 0.125 scales both.
        {"damped step", system({[](const ValueArray& x) { return x[0] + 3.0; },
                                [](const ValueArray& x) { return x[1] - 2.0; }}),
         array({1, 1}), 1, array({0.5, 1.125}), 5.0},
        // An unknown at 0 forbids every step; equal norms never count as stale.
        {"unknown at zero", system({[](const ValueArray& x) { return x[0] - 1.0; }}), array({0}), 20, array({0}), 1.0},
        // A limit of 0 throws before the first evaluation: the norm is never written.
        {"no trials", knownRoot(2, nullptr), array({1, 1}), 0, array({1, 1}), -1.0},
    };
    for (const Case& c : cases) {
        ValueArray x = c.start;
        std::uint64_t trials = c.trials;
        double norm = -1.0;
        EXPECT_THAT([&] { solve(c.f, trials, x, NewtonSettings{c.trials, 0.0, 5, 1e300, 0.0, 0.5, kExactStep}, norm); },
                    ThrowsMessage<KorvaneError>(StrEq(kTrialsExceeded))) << c.what;
        EXPECT_TRUE(sameBits(x, c.end)) << c.what;
        EXPECT_EQ(norm, c.norm) << c.what;
        EXPECT_EQ(trials, c.trials) << c.what;  // not written on the error
    }
}

// Newton on atan(x) from 1.5 overshoots further every step, so after the first point the norm
// only grows. Equality with the bound still qualifies as a best point.
TEST(NewtonRaphsonEstimatedJacobian, StaleSearchRestoresTheBestPoint) {
    const ResidualFunction f = system({[](const ValueArray& x) { return std::atan(x[0]); }});
    ValueArray x = array({1.5});
    std::uint64_t trials = 100;
    double norm = -1.0;
    solve(f, trials, x, NewtonSettings{100, 0.0, 5, std::atan(1.5), 0.0, 0.0, 1e-7}, norm);
    EXPECT_EQ(trials, 5u);
    EXPECT_EQ(x[0], 1.5);
    EXPECT_EQ(norm, std::atan(1.5));

    // With no stale allowance the first iteration ends; above the bound nothing was stored.
    x = array({1.5});
    solve(f, trials = 100, x, NewtonSettings{100, 0.0, 0, 0.1, 0.0, 0.0, 1e-7}, norm);
    EXPECT_EQ(trials, 0u);
    EXPECT_EQ(x.size(), 0u);
    EXPECT_EQ(norm, DBL_MAX);
}

TEST(NewtonRaphsonEstimatedJacobian, SmallStepEndsAfterTheStepWithTheNormBeforeIt) {
    ValueArray x = array({0});
    std::uint64_t trials = 100;
    double norm = -1.0;
    solve(system({[](const ValueArray& v) { return v[0] - 1.0; }}), trials, x, NewtonSettings{100, 10.0, 5, 1e300, 0.0, 0.0, kExactStep}, norm);
    EXPECT_EQ(trials, 0u);
    EXPECT_EQ(x[0], 1.0);
    EXPECT_EQ(norm, 1.0);
}

// The ten-argument solve is a thin shell over iterate(); every ending must look the same
// through both, down to the last bit of x and of the norm.
TEST(NewtonRaphsonEstimatedJacobian, SolveAndIterateAgreeOnEveryEnding) {
    struct Case { NewtonEnding ending; ResidualFunction f; ValueArray start; NewtonSettings s; };
    const std::vector<Case> cases = {
        {NewtonEnding::Converged, knownRoot(3, nullptr), array({1, 1, 1}), NewtonSettings{100, 0, 5, 1e300, 1e-10, 0.5, 1e-7}},
        {NewtonEnding::BestPoint, system({[](const ValueArray& x) { return std::atan(x[0]); }}), array({1.5}),
         NewtonSettings{100, 0, 5, 10, 0, 0, 1e-7}},
        {NewtonEnding::SmallStep, knownRoot(2, nullptr), array({1, 1}), NewtonSettings{100, 1e-6, 5, 1e300, 0, 0.5, 1e-7}},
        {NewtonEnding::TrialLimit, knownRoot(2, nullptr), array({1, 1}), NewtonSettings{4, 0, 5, 1e300, 0, 0.5, 1e-7}},
    };
    for (const Case& c : cases) {
        ValueArray viaIterate = c.start;
        const NewtonOutcome outcome = NewtonRaphsonEstimatedJacobian().iterate(c.f, viaIterate, c.s);
        EXPECT_EQ(outcome.ending, c.ending);

        ValueArray viaSolve = c.start;
        std::uint64_t trials = c.s.trials;
        double norm = -1.0;
        bool threw = false;
        try {
            solve(c.f, trials, viaSolve, c.s, norm);
        } catch (const KorvaneError&) {
            threw = true;
        }
        EXPECT_EQ(threw, c.ending == NewtonEnding::TrialLimit);
        EXPECT_EQ(threw ? c.s.trials : trials, outcome.iterations);
        EXPECT_TRUE(sameBits(viaSolve, viaIterate));
        EXPECT_EQ(std::memcmp(&norm, &outcome.residualNorm, sizeof norm), 0);
    }
}

// ln(x) from 5: the first full Newton step lands at a negative x, where the residual is NaN.
TEST(NewtonRaphsonEstimatedJacobian, NaNResidualStopsOnlyWhenAsked) {
    const ResidualFunction f = system({[](const ValueArray& x) { return std::log(x[0]); }});
    NewtonSettings s{30, 0, 5, 1e300, 1e-12, 0.0, 1e-7};
    ValueArray x = array({5});
    NewtonOutcome outcome = NewtonRaphsonEstimatedJacobian().iterate(f, x, s);
    EXPECT_EQ(outcome.ending, NewtonEnding::TrialLimit);
    EXPECT_EQ(outcome.iterations, 30u);

    s.stopOnNaN = true;
    x = array({5});
    outcome = NewtonRaphsonEstimatedJacobian().iterate(f, x, s);
    EXPECT_EQ(outcome.ending, NewtonEnding::NotANumber);
    EXPECT_EQ(outcome.iterations, 1u);
    EXPECT_TRUE(std::isnan(outcome.residualNorm));
    EXPECT_LT(x[0], 0.0);  // the point that produced the NaN
}
