#pragma once

#include "tools/DirectSolver.h"
#include "tools/ILinearEquationSolver.h"
#include "tools/LUSolver.h"
#include "tools/ValueArray.h"
#include "tools/ValueMatrix.h"

#include <cstdint>

namespace korvane::tools {

/// Routes every operation by the order of the last factorized matrix: orders 1 and 2 to the
/// closed-form inverse, larger ones to the LU. Before any factorization the order is 0, so
/// calls go to the closed-form solver.
class CombinedSolver final : public ILinearEquationSolver {
public:
    /// Stores a's column count as the order, then hands `a` to the selected solver.
    void factorize(const ValueMatrix& a) override;
    void factorize(ValueMatrix&& a) override;
    /// The remaining operations keep the order and go to the solver it selects.
    void solve(const ValueMatrix& b, ValueMatrix& x) override;
    void solve(const ValueArray& b, ValueArray& x) override;
    void unimplementedOperation(const ValueArray& argument) override;

    /// Column count of the matrix last handed to factorize; 0 before the first.
    std::uint64_t order() const { return order_; }
    const LUSolver& lu() const { return lu_; }

private:
    bool usesLU() const { return order_ > 2; }

    std::uint64_t order_ = 0;
    LUSolver lu_;
    DirectSolver direct_;
};

}  // namespace korvane::tools
