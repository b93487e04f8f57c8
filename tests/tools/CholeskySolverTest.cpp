#include "tools/CholeskySolver.h"

#include "tools/TestMatrices.h"

#include <gtest/gtest.h>

#include <limits>

using korvane::tools::CholeskySolver;
using korvane::tools::test::matrix;

TEST(CholeskySolver, SolvesSymmetricPositiveDefiniteSystems) {
    // A = [[4, 2, 0.4], [2, 5, 1], [0.4, 1, 3]] (upper triangle ignored), x = [1, -2, 0.5].
    korvane::tools::ValueMatrix a = matrix(3, 3, {4, 99, 99, 2, 5, 99, 0.4, 1, 3});
    double b[3] = {4 * 1 + 2 * -2 + 0.4 * 0.5, 2 * 1 + 5 * -2 + 1 * 0.5, 0.4 * 1 + 1 * -2 + 3 * 0.5};
    ASSERT_TRUE(CholeskySolver::factorize(a));
    CholeskySolver::solve(a, b);
    EXPECT_NEAR(b[0], 1.0, 1e-14);
    EXPECT_NEAR(b[1], -2.0, 1e-14);
    EXPECT_NEAR(b[2], 0.5, 1e-14);
}

TEST(CholeskySolver, RefusesMatricesThatAreNotPositiveDefinite) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (korvane::tools::ValueMatrix a : {matrix(2, 2, {1, 0, 2, 1}), matrix(2, 2, {0, 0, 0, 1}),
                                          matrix(2, 2, {-1, 0, 0, 1}), matrix(1, 1, {nan})}) {
        EXPECT_FALSE(CholeskySolver::factorize(a));
    }
}
