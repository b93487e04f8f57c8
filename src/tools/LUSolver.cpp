#include "tools/LUSolver.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <stdexcept>
#include <utility>

namespace korvane::tools {

namespace {

/// Elements above this (DBL_MAX × 1e-10) leave no headroom for the elimination's products.
constexpr double kLargestElement = 1.7976931348623157e+298;

}  // namespace

void LUSolver::factorize(const ValueMatrix& a) {
    lu_ = a;
    factorized_ = decompose();
}

void LUSolver::factorize(ValueMatrix&& a) {
    lu_ = std::move(a);
    factorized_ = decompose();
}

void LUSolver::solve(const ValueMatrix&, ValueMatrix&) { rejectOperation(); }

void LUSolver::unimplementedOperation(const ValueArray&) { rejectOperation(); }

bool LUSolver::decompose() {
    const std::uint64_t n = lu_.columns();
    scale_.resize(n);
    pivots_.resize(n);
    // An index left over from a larger earlier matrix would point outside this one if a
    // failed decomposition leaves it in place; in-range leftovers are kept as they are.
    for (std::uint64_t& p : pivots_) {
        if (p >= n) p = 0;
    }
    if (!scanRows(n)) return false;
    for (std::uint64_t i = 0; i < n; ++i) scale_[i] = 1.0 / (scale_[i] + DBL_MIN);

    const double rootN = std::sqrt(static_cast<double>(n));
    for (std::uint64_t j = 0; j < n; ++j) {
        const double errBest = eliminateColumn(j, n) * 10.0;
        const double p = lu_(j, j);
        // The pivot is no larger than the rounding error accumulated in computing it.
        if (errBest > std::fabs(p) && errBest > rootN * std::fabs(p)) return false;
        const double inverse = 1.0 / p;
        for (std::uint64_t i = j + 1; i < n; ++i) lu_(i, j) = lu_(i, j) * inverse;
    }
    return true;
}

bool LUSolver::scanRows(std::uint64_t n) {
    for (std::uint64_t i = 0; i < n; ++i) {
        const double* row = lu_.row(i);
        double big = 0.0;
        for (std::uint64_t j = 0; j < n; ++j) {
            const double magnitude = std::fabs(row[j]);
            if (magnitude > big) big = magnitude;
        }
        if (big <= DBL_MIN) return false;
        if (big > kLargestElement) throw std::overflow_error("Matrix elements too large");
        scale_[i] = big;
    }
    return true;
}

double LUSolver::eliminateColumn(std::uint64_t j, std::uint64_t n) {
    ValueMatrix& a = lu_;
    for (std::uint64_t i = 0; i < j; ++i) {
        double sum = a(i, j);
        for (std::uint64_t k = 0; k < i; ++k) sum -= a(i, k) * a(k, j);
        a(i, j) = sum;
    }

    double best = -DBL_MAX;
    double errBest = 0.0;
    std::uint64_t pivotRow = j;
    for (std::uint64_t i = j; i < n; ++i) {
        double sum = a(i, j);
        double err = std::fabs(sum) * DBL_EPSILON + DBL_MIN;
        for (std::uint64_t k = 0; k < j; ++k) {
            const double t = a(i, k) * a(k, j);
            sum = sum - t;
            err = err + std::fabs(t) * DBL_EPSILON;
        }
        a(i, j) = sum;
        const double merit = scale_[i] * std::fabs(sum);
        if (merit > best) {  // strict: of equal candidates the upper row stays
            best = merit;
            errBest = err;
            pivotRow = i;
        }
    }

    if (pivotRow != j) {
        std::swap_ranges(a.row(pivotRow), a.row(pivotRow) + n, a.row(j));
        scale_[pivotRow] = scale_[j];
    }
    pivots_[j] = pivotRow;
    return errBest;
}

void LUSolver::solve(const ValueArray& b, ValueArray& x) {
    const ValueMatrix& a = lu_;
    const std::uint64_t n = a.columns();
    x = b;

    // Forward substitution; leading entries no larger than DBL_MIN count as zero and are skipped.
    std::uint64_t first = n;
    for (std::uint64_t i = 0; i < n; ++i) {
        const std::uint64_t ip = pivots_[i];
        double sum = x[ip];
        x[ip] = x[i];
        if (first < n) {
            for (std::uint64_t j = first; j < i; ++j) sum -= a(i, j) * x[j];
        } else if (std::fabs(sum) > DBL_MIN) {
            first = i;
        }
        x[i] = sum;
    }

    for (std::uint64_t i = n; i-- > 0;) {
        double sum = x[i];
        for (std::uint64_t j = i + 1; j < n; ++j) sum -= a(i, j) * x[j];
        x[i] = sum / a(i, i);
    }
}

}  // namespace korvane::tools
