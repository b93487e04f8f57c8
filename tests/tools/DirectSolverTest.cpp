#include "tools/DirectSolver.h"

#include "tools/TestMatrices.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using namespace korvane::tools;
using korvane::ValueArray;
using korvane::tools::test::array;
using korvane::tools::test::matrix;

// det = 2·3 − 1·4 = 2; the inverse is [1.5 −0.5; −2 1], all exact in binary. x is not resized.
TEST(DirectSolver, InvertsOrderTwoInClosedFormAndZeroDeterminantGivesNonFinite) {
    DirectSolver direct;
    direct.factorize(matrix(2, 2, {2, 1, 4, 3}));
    ValueArray x(3);
    x[2] = 7.0;
    direct.solve(array({1, 2}), x);
    EXPECT_EQ(std::vector<double>(x.begin(), x.end()), (std::vector<double>{0.5, 0.0, 7.0}));
    ValueMatrix X(5, 5);
    direct.solve(matrix(2, 2, {2, 1, 4, 3}), X);  // inverse × A = I, replacing X's shape
    EXPECT_EQ(std::vector<double>(X.data(), X.data() + 4), (std::vector<double>{1, 0, 0, 1}));
    direct.factorize(matrix(2, 2, {1, 2, 2, 4}));
    direct.solve(array({1, 1}), x);
    EXPECT_FALSE(std::isfinite(x[0]) || std::isfinite(x[1]));
}
