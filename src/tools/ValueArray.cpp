#include "tools/ValueArray.h"

#include <algorithm>
#include <utility>

namespace korvane {

ValueArray::ValueArray(std::uint64_t n) : data_(n ? new double[n]() : nullptr), size_(n), capacity_(n) {}

ValueArray::ValueArray(const ValueArray& other)
    : data_(other.size_ ? new double[other.size_] : nullptr), size_(other.size_), capacity_(other.size_) {
    std::copy(other.data_, other.data_ + other.size_, data_);
}

ValueArray::ValueArray(ValueArray&& other) noexcept
    : data_(std::exchange(other.data_, nullptr)),
      size_(std::exchange(other.size_, 0)),
      capacity_(std::exchange(other.capacity_, 0)) {}

ValueArray& ValueArray::operator=(const ValueArray& other) {
    if (this == &other) return *this;
    if (other.size_ > capacity_) {
        double* fresh = new double[other.size_];
        delete[] data_;
        data_ = fresh;
        capacity_ = other.size_;
    }
    std::copy(other.data_, other.data_ + other.size_, data_);
    size_ = other.size_;
    return *this;
}

ValueArray& ValueArray::operator=(ValueArray&& other) noexcept {
    if (this == &other) return *this;
    delete[] data_;
    data_ = std::exchange(other.data_, nullptr);
    size_ = std::exchange(other.size_, 0);
    capacity_ = std::exchange(other.capacity_, 0);
    return *this;
}

ValueArray::~ValueArray() { delete[] data_; }

void ValueArray::resize(std::uint64_t n) {
    if (n > capacity_) {
        double* fresh = new double[n]();
        std::copy(data_, data_ + size_, fresh);
        delete[] data_;
        data_ = fresh;
        capacity_ = n;
    } else if (n > size_) {
        std::fill(data_ + size_, data_ + n, 0.0);
    }
    size_ = n;
}

}  // namespace korvane
