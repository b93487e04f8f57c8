#include "tools/ValueArray.h"

#include <gtest/gtest.h>

#include <utility>

using korvane::ValueArray;

TEST(ValueArray, ResizeZeroFillsGrowthEvenWithinCapacityAndCopiesReuseCapacity) {
    ValueArray a(3);
    a[0] = 1.0, a[1] = 2.0, a[2] = 3.0;
    a.resize(1);
    a.resize(3);  // regrowing within capacity must not resurrect old values
    EXPECT_EQ(a.capacity(), 3u);
    EXPECT_EQ(a[0], 1.0);
    EXPECT_EQ(a[2], 0.0);
    ValueArray big(6);
    big = a;
    EXPECT_EQ(big.size(), 3u);
    EXPECT_EQ(big.capacity(), 6u);
    ValueArray moved(std::move(big));
    EXPECT_EQ(big.size(), 0u);
    EXPECT_EQ(big.data(), nullptr);
    EXPECT_EQ(moved[0], 1.0);
}
