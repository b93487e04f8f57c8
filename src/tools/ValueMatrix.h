#pragma once

#include "tools/ValueArray.h"

#include <cstdint>

namespace korvane::tools {

/// Dense row-major matrix of doubles: Jacobians and their LU factors. Element (i, j) lies at
/// i × columns + j in one contiguous block.
class ValueMatrix {
public:
    ValueMatrix() = default;
    /// A zero matrix of rows × columns.
    ValueMatrix(std::uint64_t rows, std::uint64_t columns);
    ValueMatrix(const ValueMatrix& other) = default;
    ValueMatrix& operator=(const ValueMatrix& other) = default;
    /// The source is left empty: no elements, zero rows and columns.
    ValueMatrix(ValueMatrix&& other) noexcept;
    ValueMatrix& operator=(ValueMatrix&& other) noexcept;
    ~ValueMatrix() = default;

    /// Nothing happens when both counts already match. Otherwise the flat element block is
    /// resized to rows × columns (elements are not moved to a new layout; new ones are zero).
    void resize(std::uint64_t rows, std::uint64_t columns);

    double& operator()(std::uint64_t i, std::uint64_t j) { return elements_[i * columns_ + j]; }
    const double& operator()(std::uint64_t i, std::uint64_t j) const { return elements_[i * columns_ + j]; }
    std::uint64_t rows() const { return rows_; }
    std::uint64_t columns() const { return columns_; }
    /// The first element of row i; a row is `columns()` contiguous doubles.
    double* row(std::uint64_t i) { return elements_.data() + i * columns_; }
    const double* row(std::uint64_t i) const { return elements_.data() + i * columns_; }
    double* data() { return elements_.data(); }
    const double* data() const { return elements_.data(); }

private:
    ValueArray elements_;
    std::uint64_t rows_ = 0;
    std::uint64_t columns_ = 0;
};

}  // namespace korvane::tools
