#pragma once

#include "tools/ILinearEquationSolver.h"
#include "tools/ValueArray.h"
#include "tools/ValueMatrix.h"

#include <cstdint>
#include <vector>

namespace korvane::tools {

/// Crout LU decomposition with implicit partial pivoting, in place on its own copy of the
/// matrix. A pivot that is indistinguishable from rounding noise ends the decomposition with
/// `isFactorized()` false; nothing is thrown for a singular matrix, and `solve` still runs on
/// whatever partial factors were reached.
class LUSolver final : public ILinearEquationSolver {
public:
    /// Copies `a`, then decomposes it. Throws std::overflow_error "Matrix elements too large"
    /// for an element above 1.7976931348623157e+298 (the flag then keeps its previous value).
    void factorize(const ValueMatrix& a) override;
    /// As the copying overload, without the copy; `a` is left empty.
    void factorize(ValueMatrix&& a) override;
    /// Not supported: throws std::logic_error.
    void solve(const ValueMatrix& b, ValueMatrix& x) override;
    /// Forward and back substitution against the stored factors; `x` becomes b's size.
    void solve(const ValueArray& b, ValueArray& x) override;
    /// Not supported: throws std::logic_error.
    void unimplementedOperation(const ValueArray& argument) override;

    /// The result of the last completed decomposition.
    bool isFactorized() const { return factorized_; }
    /// L below the diagonal (unit diagonal implied), U on and above it, rows permuted.
    const ValueMatrix& factors() const { return lu_; }
    /// pivots()[j] is the row exchanged with row j at column j.
    const std::vector<std::uint64_t>& pivots() const { return pivots_; }

private:
    /// Decomposes lu_ in place; false for a zero row or a pivot lost in rounding noise.
    bool decompose();
    /// Fills scale_ with the largest magnitude of each row; false at the first zero row.
    bool scanRows(std::uint64_t n);
    /// The Crout pass over column j: finishes U above the diagonal, picks and swaps in the
    /// pivot row and returns the rounding-error estimate of the chosen pivot.
    double eliminateColumn(std::uint64_t j, std::uint64_t n);

    ValueMatrix lu_;
    ValueArray scale_;
    bool factorized_ = false;
    std::vector<std::uint64_t> pivots_;
};

}  // namespace korvane::tools
