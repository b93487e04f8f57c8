#pragma once

#include "tools/ILinearEquationSolver.h"
#include "tools/ValueArray.h"
#include "tools/ValueMatrix.h"

namespace korvane::tools {

/// Closed-form inverse for systems of order 1 and 2, the common small speciation systems.
/// There is no singularity test: a zero determinant gives infinities or NaN in every solution.
/// A matrix of any other order is stored as it is, not inverted; only order 1 and 2 are ever
/// routed here.
class DirectSolver final : public ILinearEquationSolver {
public:
    /// Copies `a`, then inverts it in place when its order is 1 or 2.
    void factorize(const ValueMatrix& a) override;
    /// As the copying overload, without the copy; `a` is left empty.
    void factorize(ValueMatrix&& a) override;
    /// x = inverse × b, replacing x's contents and shape.
    void solve(const ValueMatrix& b, ValueMatrix& x) override;
    /// x = inverse × b. x is not resized: it must already hold at least as many elements as
    /// the inverse has rows; those are overwritten, the rest is left alone.
    void solve(const ValueArray& b, ValueArray& x) override;
    /// Not supported: throws std::logic_error.
    void unimplementedOperation(const ValueArray& argument) override;

    /// The inverse after an order 1 or 2 factorization, otherwise the matrix as given.
    const ValueMatrix& inverse() const { return inverse_; }

private:
    void invert();

    ValueMatrix inverse_;
};

}  // namespace korvane::tools
