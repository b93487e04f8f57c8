#include "tools/CholeskySolver.h"

#include "tools/TestMatrices.h"

#include <gtest/gtest.h>

#include <cmath>

using korvane::tools::CholeskySolver;
using korvane::tools::ValueMatrix;
using korvane::tools::test::matrix;

// A = [[4, 2, 0.4], [2, 5, 1], [0.4, 1, 3]] from its lower triangle (99s are ignored), x = [1, -2, 0.5];
// indefinite, semi-definite and NaN matrices are refused.
TEST(CholeskySolver, SolvesPositiveDefiniteSystemsAndRefusesTheRest) {
    ValueMatrix a = matrix(3, 3, {4, 99, 99, 2, 5, 99, 0.4, 1, 3});
    double b[3] = {0.2, -7.5, -0.1};
    ASSERT_TRUE(CholeskySolver::factorize(a));
    CholeskySolver::solve(a, b);
    EXPECT_NEAR(b[0], 1.0, 1e-14);
    EXPECT_NEAR(b[1], -2.0, 1e-14);
    EXPECT_NEAR(b[2], 0.5, 1e-14);
    for (ValueMatrix bad : {matrix(2, 2, {1, 0, 2, 1}), matrix(2, 2, {0, 0, 0, 1}), matrix(1, 1, {NAN})})
        EXPECT_FALSE(CholeskySolver::factorize(bad));
}
