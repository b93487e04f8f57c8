#pragma once

#include <cstddef>
#include <cstdint>

namespace korvane {

/// Dense, growable vector of doubles: unknowns, residuals, totals (mol/kgw) and log K values.
/// Storage grows to exactly the size asked for, never beyond, and new elements are zero.
class ValueArray {
public:
    ValueArray() = default;
    /// n zeros, capacity n.
    explicit ValueArray(std::uint64_t n);
    ValueArray(const ValueArray& other);
    ValueArray(ValueArray&& other) noexcept;
    /// Copies the elements; reallocates (to exactly the new size) only beyond the capacity.
    ValueArray& operator=(const ValueArray& other);
    ValueArray& operator=(ValueArray&& other) noexcept;
    ~ValueArray();

    /// Shrinking or growing within capacity only changes the size; growing beyond it
    /// reallocates to exactly n, keeping the old elements and zero-filling the new ones.
    void resize(std::uint64_t n);

    double& operator[](std::uint64_t i) { return data_[i]; }
    const double& operator[](std::uint64_t i) const { return data_[i]; }
    std::uint64_t size() const { return size_; }
    std::uint64_t capacity() const { return capacity_; }
    double* data() { return data_; }
    const double* data() const { return data_; }
    double* begin() { return data_; }
    double* end() { return data_ + size_; }
    const double* begin() const { return data_; }
    const double* end() const { return data_ + size_; }

private:
    double* data_ = nullptr;
    std::uint64_t size_ = 0;
    std::uint64_t capacity_ = 0;
};

}  // namespace korvane
