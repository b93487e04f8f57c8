#include "tools/ValueMatrix.h"

#include <utility>

namespace korvane::tools {

ValueMatrix::ValueMatrix(std::uint64_t rows, std::uint64_t columns)
    : elements_(rows * columns), rows_(rows), columns_(columns) {}

ValueMatrix::ValueMatrix(ValueMatrix&& other) noexcept
    : elements_(std::move(other.elements_)),
      rows_(std::exchange(other.rows_, 0)),
      columns_(std::exchange(other.columns_, 0)) {}

ValueMatrix& ValueMatrix::operator=(ValueMatrix&& other) noexcept {
    if (this == &other) return *this;
    elements_ = std::move(other.elements_);
    rows_ = std::exchange(other.rows_, 0);
    columns_ = std::exchange(other.columns_, 0);
    return *this;
}

void ValueMatrix::resize(std::uint64_t rows, std::uint64_t columns) {
    if (rows == rows_ && columns == columns_) return;
    elements_.resize(rows * columns);
    rows_ = rows;
    columns_ = columns;
}

}  // namespace korvane::tools
