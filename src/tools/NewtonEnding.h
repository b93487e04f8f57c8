#pragma once

namespace korvane::tools {

/// How one Newton-Raphson run ended. The first three are normal endings.
enum class NewtonEnding {
    Converged,   ///< the residual norm reached residualTolerance; x is that point
    BestPoint,   ///< the norm stopped improving; x and the norm are those of the best point
    SmallStep,   ///< the undamped step sum fell to stepTolerance; x is after that step
    TrialLimit,  ///< the iteration limit was reached; x is the last iterate
    NotANumber,  ///< the residual norm became NaN (only with stopOnNaN); x is the point that gave it
};

}  // namespace korvane::tools
