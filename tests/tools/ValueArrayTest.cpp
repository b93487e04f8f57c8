#include "tools/ValueArray.h"

#include <gtest/gtest.h>

#include <utility>

using korvane::ValueArray;

TEST(ValueArray, ConstructionGivesZerosWithExactCapacity) {
    ValueArray a(4);
    EXPECT_EQ(a.size(), 4u);
    EXPECT_EQ(a.capacity(), 4u);
    for (double v : a) EXPECT_EQ(v, 0.0);
    EXPECT_EQ(ValueArray().size(), 0u);
}

TEST(ValueArray, ResizeKeepsElementsAndZeroFillsGrowth) {
    ValueArray a(3);
    a[0] = 1.0; a[1] = 2.0; a[2] = 3.0;
    a.resize(1);
    EXPECT_EQ(a.capacity(), 3u);
    a.resize(3);  // regrowing within capacity must not resurrect old values
    EXPECT_EQ(a[0], 1.0);
    EXPECT_EQ(a[1], 0.0);
    EXPECT_EQ(a[2], 0.0);
    a.resize(5);
    EXPECT_EQ(a.capacity(), 5u);
    EXPECT_EQ(a[0], 1.0);
    EXPECT_EQ(a[4], 0.0);
}

TEST(ValueArray, CopyAssignmentReallocatesOnlyBeyondCapacity) {
    ValueArray big(6);
    ValueArray small(2);
    small[1] = 7.0;
    big = small;
    EXPECT_EQ(big.size(), 2u);
    EXPECT_EQ(big.capacity(), 6u);
    EXPECT_EQ(big[1], 7.0);
    small = ValueArray(9) = ValueArray(9);
    EXPECT_EQ(small.capacity(), 9u);
    ValueArray copy(big);
    EXPECT_EQ(copy.capacity(), 2u);
}

TEST(ValueArray, MovedFromArrayIsEmpty) {
    ValueArray a(3);
    a[2] = 5.0;
    ValueArray b(std::move(a));
    EXPECT_EQ(a.size(), 0u);
    EXPECT_EQ(a.data(), nullptr);
    EXPECT_EQ(b[2], 5.0);
    ValueArray c;
    c = std::move(b);
    EXPECT_EQ(b.size(), 0u);
    EXPECT_EQ(c[2], 5.0);
}
