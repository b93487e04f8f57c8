#include "tools/DirectSolver.h"

#include "tools/TestMatrices.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace korvane::tools;
using korvane::ValueArray;
using korvane::tools::test::array;
using korvane::tools::test::matrix;

TEST(DirectSolver, InvertsOrdersOneAndTwoInClosedForm) {
    DirectSolver direct;
    ValueArray x(1);
    direct.factorize(matrix(1, 1, {4}));
    direct.solve(array({2}), x);
    EXPECT_EQ(x[0], 0.5);

    // det = 2·3 − 1·4 = 2; the inverse is [1.5 −0.5; −2 1], all exact in binary.
    direct.factorize(matrix(2, 2, {2, 1, 4, 3}));
    x = ValueArray(3);
    x[2] = 7.0;
    direct.solve(array({1, 2}), x);
    EXPECT_EQ(x[0], 0.5);
    EXPECT_EQ(x[1], 0.0);
    EXPECT_EQ(x[2], 7.0);  // x is not resized; entries past the order are left alone

    ValueMatrix X(5, 5);
    direct.solve(matrix(2, 2, {2, 1, 4, 3}), X);  // inverse × A = I, replacing X's shape
    ASSERT_EQ(X.rows(), 2u);
    ASSERT_EQ(X.columns(), 2u);
    EXPECT_EQ(X(0, 0), 1.0);
    EXPECT_EQ(X(0, 1), 0.0);
    EXPECT_EQ(X(1, 0), 0.0);
    EXPECT_EQ(X(1, 1), 1.0);
}

TEST(DirectSolver, ZeroDeterminantGivesNonFiniteResultsWithoutThrowing) {
    DirectSolver direct;
    direct.factorize(matrix(2, 2, {1, 2, 2, 4}));
    ValueArray x(2);
    direct.solve(array({1, 1}), x);
    EXPECT_FALSE(std::isfinite(x[0]));
    EXPECT_FALSE(std::isfinite(x[1]));
}
