#pragma once

#include "tools/NewtonEnding.h"

#include <cstdint>

namespace korvane::tools {

/// What a Newton-Raphson run reports besides the final x.
struct NewtonOutcome {
    NewtonEnding ending = NewtonEnding::TrialLimit;
    /// Completed iterations (steps taken); equals the trial limit on NewtonEnding::TrialLimit.
    std::uint64_t iterations = 0;
    /// Sum of |F| at the ending: the last norm measured, or the best point's norm on
    /// NewtonEnding::BestPoint (DBL_MAX when no point ever qualified). NaN when nothing was
    /// evaluated (a trial limit of 0).
    double residualNorm = 0.0;
};

}  // namespace korvane::tools
