#pragma once

#include <cstdint>

namespace korvane::tools {

/// The knobs of one Newton-Raphson run. Nothing is defaulted to a working value: a caller sets
/// every field it means (a forgotten `trials` of 0 ends the run before the first evaluation).
struct NewtonSettings {
    /// Most iterations allowed.
    std::uint64_t trials = 0;
    /// Stop when the sum of |dx| of one undamped step is at or below this.
    double stepTolerance = 0.0;
    /// How many iterations whose norm exceeds the best one end the search.
    std::uint64_t staleLimit = 0;
    /// A residual norm at or below this makes x a candidate best point.
    double residualBound = 0.0;
    /// Converged when the residual norm (sum of |F|) is at or below this.
    double residualTolerance = 0.0;
    /// Largest fraction of |x(i)| that one step may change x(i); 0 or less turns damping off.
    double maxRelativeStep = 0.0;
    /// Absolute perturbation of every unknown in the forward-difference Jacobian.
    double jacobianScale = 0.0;
    /// End at once when the residual norm is NaN; it can never recover from there.
    bool stopOnNaN = false;
};

}  // namespace korvane::tools
