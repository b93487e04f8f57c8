#pragma once

#include "tools/NewtonOutcome.h"
#include "tools/NewtonSettings.h"
#include "tools/ResidualFunction.h"
#include "tools/ValueArray.h"
#include "tools/ValueMatrix.h"

#include <cstdint>

namespace korvane::tools {

/// Newton-Raphson for a square system F(x) = 0 known only through its residuals. The Jacobian
/// is estimated by forward differences with one absolute step; each step is damped so that no
/// unknown changes by more than a set fraction of its magnitude; the best acceptable point is
/// remembered and restored when the residual stops improving. Holds no state.
class NewtonRaphsonEstimatedJacobian {
public:
    /// Solves in place of x. On return `trials` holds the iterations done and *residualNorm the
    /// final norm (the best point's on a fall-back). Throws KorvaneError "Number of trials
    /// exceeded without finding a solution." when `trials` iterations pass (or trials is 0);
    /// then x is the last iterate, *residualNorm the last norm measured and `trials` unchanged.
    /// `residualNorm` must point to a double.
    virtual void solve(const ResidualFunction& f, std::uint64_t& trials, ValueArray& x,
                       double stepTolerance, std::uint64_t staleLimit, double residualBound,
                       double residualTolerance, double* residualNorm, double maxRelativeStep,
                       double jacobianScale);

    /// The same iteration as `solve`, reporting how it ended instead of throwing at the trial
    /// limit. Exceptions from f or from the linear solver still pass through.
    NewtonOutcome iterate(const ResidualFunction& f, ValueArray& x, const NewtonSettings& settings) const;

private:
    /// F = f(x), then J(i, j) = (f(x + h·e_j)(i) − F(i)) / h with h = jacobianScale. The
    /// callable is taken by value: one copy per Newton iteration.
    static void estimateJacobian(ResidualFunction f, const ValueArray& x, ValueArray& F, ValueMatrix& J,
                                 double jacobianScale);
};

}  // namespace korvane::tools
