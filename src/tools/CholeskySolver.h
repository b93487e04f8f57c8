#pragma once

#include "tools/ValueMatrix.h"

namespace korvane::tools {

/// Cholesky factorisation A = L·Lᵀ of a symmetric positive-definite matrix, in place of its lower
/// triangle: the linear step of a Newton method whose Jacobian is the Hessian of a convex
/// function. Half the work of an LU and no pivoting; only the lower triangle is read.
class CholeskySolver {
public:
    /// Overwrites the lower triangle of the square matrix `a` with L. False, leaving `a` partly
    /// factorised, when a pivot is not positive: the matrix is not positive definite to working
    /// precision.
    static bool factorize(ValueMatrix& a);
    /// Solves L·Lᵀ·x = b in place of `b` (rows() entries), with L from `factorize`.
    static void solve(const ValueMatrix& factors, double* b);
};

}  // namespace korvane::tools
