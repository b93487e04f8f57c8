#pragma once

#include "tools/ValueArray.h"
#include "tools/ValueMatrix.h"

#include <cstdint>
#include <initializer_list>

namespace korvane::tools::test {

/// A rows × columns matrix filled row by row from `values`.
inline ValueMatrix matrix(std::uint64_t rows, std::uint64_t columns, std::initializer_list<double> values) {
    ValueMatrix m(rows, columns);
    std::uint64_t k = 0;
    for (double v : values) m.data()[k++] = v;
    return m;
}

inline ValueArray array(std::initializer_list<double> values) {
    ValueArray a(values.size());
    std::uint64_t k = 0;
    for (double v : values) a[k++] = v;
    return a;
}

}  // namespace korvane::tools::test
