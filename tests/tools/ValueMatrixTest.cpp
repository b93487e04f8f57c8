#include "tools/ValueMatrix.h"

#include <gtest/gtest.h>

using korvane::tools::ValueMatrix;

TEST(ValueMatrix, ResizeKeepsTheRowMajorFlatBlock) {
    ValueMatrix m(2, 3);
    for (int k = 0; k < 6; ++k) m.data()[k] = k + 1.0;
    EXPECT_EQ(m(1, 0), 4.0);
    m.resize(3, 2);  // same element count: only the shape changes
    EXPECT_EQ(m(1, 0), 3.0);
    m.resize(3, 3);
    EXPECT_EQ(m(1, 2), 6.0);
    EXPECT_EQ(m(2, 2), 0.0);
}
