#include "tools/NewtonRaphsonEstimatedJacobian.h"

#include "tools/CombinedSolver.h"

#include <korvane/KorvaneError.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <limits>
#include <utility>

namespace korvane::tools {

namespace {

constexpr const char* kTrialsExceeded = "Number of trials exceeded without finding a solution.";

/// Sum of |v(i)| over the first n entries.
double l1Norm(const ValueArray& v, std::uint64_t n) {
    double norm = 0.0;
    for (std::uint64_t i = 0; i < n; ++i) norm += std::fabs(v[i]);
    return norm;
}

/// The one factor that scales the whole step so that no unknown moves by more than
/// maxRelativeStep × |x(i)|. An unknown at 0 therefore forbids every step.
double dampingFactor(const ValueArray& x, const ValueArray& dx, double maxRelativeStep) {
    double lambda = 1.0;
    if (maxRelativeStep <= 0.0) return lambda;
    for (std::uint64_t i = 0; i < dx.size(); ++i) {
        if (std::fabs(dx[i]) > std::fabs(x[i] * maxRelativeStep)) {
            const double c = std::fabs(x[i]) * maxRelativeStep / std::fabs(dx[i]);
            lambda = std::min(lambda, c);
        }
    }
    return lambda;
}

/// x += λ·dx; returns the sum of |dx| of the undamped step.
double applyStep(ValueArray& x, const ValueArray& dx, double lambda) {
    double stepSum = 0.0;
    for (std::uint64_t i = 0; i < dx.size(); ++i) {
        stepSum = stepSum + std::fabs(dx[i]);
        x[i] = x[i] + lambda * dx[i];
    }
    return stepSum;
}

}  // namespace

void NewtonRaphsonEstimatedJacobian::solve(const ResidualFunction& f, std::uint64_t& trials, ValueArray& x,
                                           double stepTolerance, std::uint64_t staleLimit, double residualBound,
                                           double residualTolerance, double* residualNorm, double maxRelativeStep,
                                           double jacobianScale) {
    if (trials == 0) throw KorvaneError(kTrialsExceeded);

    NewtonSettings settings;
    settings.trials = trials;
    settings.stepTolerance = stepTolerance;
    settings.staleLimit = staleLimit;
    settings.residualBound = residualBound;
    settings.residualTolerance = residualTolerance;
    settings.maxRelativeStep = maxRelativeStep;
    settings.jacobianScale = jacobianScale;
    const NewtonOutcome outcome = iterate(f, x, settings);

    *residualNorm = outcome.residualNorm;
    if (outcome.ending == NewtonEnding::TrialLimit) throw KorvaneError(kTrialsExceeded);
    trials = outcome.iterations;
}

NewtonOutcome NewtonRaphsonEstimatedJacobian::iterate(const ResidualFunction& f, ValueArray& x,
                                                      const NewtonSettings& settings) const {
    if (settings.trials == 0) {
        return {NewtonEnding::TrialLimit, 0, std::numeric_limits<double>::quiet_NaN()};
    }

    // Working storage of the whole run, allocated once.
    const std::uint64_t n = x.size();
    ValueArray F(n);
    ValueArray negF(n);
    ValueArray dx(n);
    ValueMatrix J(n, n);
    CombinedSolver linear;
    ValueArray bestX;
    double best = DBL_MAX;
    bool haveBest = false;
    std::uint64_t stale = 0;
    std::uint64_t iterations = 0;

    for (;;) {
        estimateJacobian(f, x, F, J, settings.jacobianScale);
        const double norm = l1Norm(F, n);
        if (settings.residualTolerance >= norm) return {NewtonEnding::Converged, iterations, norm};
        if (settings.stopOnNaN && std::isnan(norm)) return {NewtonEnding::NotANumber, iterations, norm};

        // Only a strictly lower norm is a new best point; an equal norm neither resets nor counts.
        if (settings.residualBound >= norm && norm < best) {
            best = norm;
            bestX = x;
            haveBest = true;
            stale = 0;
        } else if (haveBest && norm > best) {
            ++stale;
        }
        if (stale >= settings.staleLimit) {
            x = bestX;  // empty when no point ever qualified (staleLimit 0)
            return {NewtonEnding::BestPoint, iterations, best};
        }

        for (std::uint64_t i = 0; i < n; ++i) negF[i] = -F[i];
        // A singular Jacobian is not detected: the step is whatever the partial factors give.
        linear.factorize(J);
        linear.solve(negF, dx);

        const double stepSum = applyStep(x, dx, dampingFactor(x, dx, settings.maxRelativeStep));
        if (settings.stepTolerance >= stepSum) return {NewtonEnding::SmallStep, iterations, norm};

        ++iterations;
        if (iterations >= settings.trials) return {NewtonEnding::TrialLimit, iterations, norm};
    }
}

void NewtonRaphsonEstimatedJacobian::estimateJacobian(ResidualFunction f, const ValueArray& x, ValueArray& F,
                                                      ValueMatrix& J, double jacobianScale) {
    f(x, F);
    const std::uint64_t rows = F.size();
    const std::uint64_t columns = x.size();
    J.resize(rows, columns);
    // One perturbed copy of x serves every column: the perturbed entry is put back afterwards,
    // so each call still sees x with exactly one entry moved by jacobianScale.
    ValueArray xp(x);
    for (std::uint64_t j = 0; j < columns; ++j) {
        xp[j] = x[j] + jacobianScale;
        ValueArray Fp;  // each evaluation gets an empty output array, as the contract promises
        f(xp, Fp);
        for (std::uint64_t i = 0; i < rows; ++i) J(i, j) = (Fp[i] - F[i]) / jacobianScale;
        xp[j] = x[j];
    }
}

}  // namespace korvane::tools
