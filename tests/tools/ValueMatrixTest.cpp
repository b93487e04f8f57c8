#include "tools/ValueMatrix.h"

#include <gtest/gtest.h>

#include <utility>

using korvane::tools::ValueMatrix;

TEST(ValueMatrix, ResizeKeepsTheFlatBlockAndIgnoresAnUnchangedShape) {
    ValueMatrix m(2, 3);
    for (int k = 0; k < 6; ++k) m.data()[k] = k + 1.0;
    EXPECT_EQ(m(1, 0), 4.0);  // row-major: (1, 0) is the fourth element
    m.resize(2, 3);
    EXPECT_EQ(m(1, 2), 6.0);
    m.resize(3, 2);  // same element count: no re-layout, only the shape changes
    EXPECT_EQ(m(1, 0), 3.0);
    m.resize(3, 3);
    EXPECT_EQ(m(1, 2), 6.0);
    EXPECT_EQ(m(2, 2), 0.0);
}

TEST(ValueMatrix, MovedFromMatrixIsEmpty) {
    ValueMatrix a(2, 2);
    a(1, 1) = 5.0;
    ValueMatrix b(std::move(a));
    EXPECT_EQ(a.rows() + a.columns(), 0u);
    EXPECT_EQ(a.data(), nullptr);
    ValueMatrix c;
    c = std::move(b);
    EXPECT_EQ(b.rows() + b.columns(), 0u);
    EXPECT_EQ(c(1, 1), 5.0);
}
