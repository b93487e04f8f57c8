#pragma once

#include "tools/ValueArray.h"
#include "tools/ValueMatrix.h"

#include <stdexcept>

namespace korvane::tools {

/// A dense linear solver for A·x = b: factorize A once, then solve for any number of right-hand
/// sides. The Newton-Raphson step J·dx = −F goes through this interface.
class ILinearEquationSolver {
public:
    virtual ~ILinearEquationSolver() = default;
    /// Takes a copy of the coefficient matrix and prepares it for solving.
    virtual void factorize(const ValueMatrix& a) = 0;
    /// Takes the coefficient matrix over; `a` is left empty.
    virtual void factorize(ValueMatrix&& a) = 0;
    /// Solves for every column of `b` at once.
    virtual void solve(const ValueMatrix& b, ValueMatrix& x) = 0;
    virtual void solve(const ValueArray& b, ValueArray& x) = 0;
    /// Reserved in the solver family; no solver supports it.
    virtual void unimplementedOperation(const ValueArray& argument) = 0;

protected:
    ILinearEquationSolver() = default;
    ILinearEquationSolver(const ILinearEquationSolver&) = default;
    ILinearEquationSolver& operator=(const ILinearEquationSolver&) = default;

    /// The answer of a solver to an operation it does not support.
    [[noreturn]] static void rejectOperation() {
        throw std::logic_error("The method or operation is not implemented.");
    }
};

}  // namespace korvane::tools
