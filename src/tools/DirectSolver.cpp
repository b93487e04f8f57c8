#include "tools/DirectSolver.h"

#include <utility>

namespace korvane::tools {

void DirectSolver::factorize(const ValueMatrix& a) {
    inverse_ = a;
    invert();
}

void DirectSolver::factorize(ValueMatrix&& a) {
    inverse_ = std::move(a);
    invert();
}

void DirectSolver::unimplementedOperation(const ValueArray&) { rejectOperation(); }

void DirectSolver::invert() {
    ValueMatrix& a = inverse_;
    if (a.columns() == 1) {
        a(0, 0) = 1.0 / a(0, 0);
    } else if (a.columns() == 2) {
        const double a00 = a(0, 0);
        const double a01 = a(0, 1);
        const double a10 = a(1, 0);
        const double a11 = a(1, 1);
        const double det = a00 * a11 - a10 * a01;
        const double f = 1.0 / det;
        a(0, 0) = a11 * f;
        a(0, 1) = -a01 * f;
        a(1, 0) = -a10 * f;
        a(1, 1) = a00 * f;
    }
}

void DirectSolver::solve(const ValueArray& b, ValueArray& x) {
    const std::uint64_t rows = inverse_.rows();
    const std::uint64_t stride = b.size();  // the inverse is square with the order of b
    const double* inv = inverse_.data();
    for (std::uint64_t i = 0; i < rows; ++i) {
        double sum = 0.0;
        for (std::uint64_t j = 0; j < stride; ++j) sum += inv[i * stride + j] * b[j];
        x[i] = sum;
    }
}

void DirectSolver::solve(const ValueMatrix& b, ValueMatrix& x) {
    const ValueMatrix& inv = inverse_;
    ValueMatrix product(inv.rows(), b.columns());
    for (std::uint64_t i = 0; i < inv.rows(); ++i) {
        for (std::uint64_t j = 0; j < b.columns(); ++j) {
            double sum = 0.0;
            for (std::uint64_t k = 0; k < inv.columns(); ++k) sum += inv(i, k) * b(k, j);
            product(i, j) = sum;
        }
    }
    x = std::move(product);
}

}  // namespace korvane::tools
