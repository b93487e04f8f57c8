#include "tools/CombinedSolver.h"

#include <utility>

namespace korvane::tools {

void CombinedSolver::factorize(const ValueMatrix& a) {
    order_ = a.columns();
    if (usesLU()) {
        lu_.factorize(a);
    } else {
        direct_.factorize(a);
    }
}

void CombinedSolver::factorize(ValueMatrix&& a) {
    order_ = a.columns();
    if (usesLU()) {
        lu_.factorize(std::move(a));
    } else {
        direct_.factorize(std::move(a));
    }
}

void CombinedSolver::solve(const ValueMatrix& b, ValueMatrix& x) {
    if (usesLU()) {
        lu_.solve(b, x);
    } else {
        direct_.solve(b, x);
    }
}

void CombinedSolver::solve(const ValueArray& b, ValueArray& x) {
    if (usesLU()) {
        lu_.solve(b, x);
    } else {
        direct_.solve(b, x);
    }
}

void CombinedSolver::unimplementedOperation(const ValueArray& argument) {
    if (usesLU()) {
        lu_.unimplementedOperation(argument);
    } else {
        direct_.unimplementedOperation(argument);
    }
}

}  // namespace korvane::tools
