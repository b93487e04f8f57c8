#pragma once

#include "tools/ValueArray.h"

#include <functional>

namespace korvane::tools {

/// Residuals of a square system at the unknowns: called as f(x, out), it sets out's size itself
/// (it may be handed an empty array) and fills one residual per equation. The Newton solver
/// copies it once per iteration, so whatever it wraps must be cheap to copy and a copy must
/// behave exactly like the original (hold large state by reference or pointer).
using ResidualFunction = std::function<void(const ValueArray&, ValueArray&)>;

}  // namespace korvane::tools
