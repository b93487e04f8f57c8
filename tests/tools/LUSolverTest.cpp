#include "tools/LUSolver.h"

#include "tools/TestMatrices.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <random>
#include <vector>

using namespace korvane::tools;
using korvane::ValueArray;
using korvane::tools::test::array;
using korvane::tools::test::matrix;

// Partial pivoting is backward stable: |A·x − b| stays within a small multiple of
// n·eps·|A|·|x| whatever the conditioning, so this checks the factors, not the matrix.
TEST(LUSolver, RandomSystemsAreSolvedToMachinePrecision) {
    std::mt19937_64 rng(20240611);
    std::uniform_real_distribution<double> element(-1.0, 1.0);
    for (std::uint64_t n = 3; n <= 20; ++n) {
        ValueMatrix a(n, n);
        ValueArray b(n), x;
        for (std::uint64_t k = 0; k < n * n; ++k) a.data()[k] = element(rng);
        for (double& bi : b) bi = element(rng);
        LUSolver lu;
        lu.factorize(a);
        ASSERT_TRUE(lu.isFactorized()) << "order " << n;
        lu.solve(b, x);
        double normA = 0.0, normX = 0.0, residual = 0.0;
        for (std::uint64_t i = 0; i < n; ++i) {
            double r = -b[i], rowSum = 0.0;
            for (std::uint64_t j = 0; j < n; ++j) r += a(i, j) * x[j], rowSum += std::fabs(a(i, j));
            normA = std::max(normA, rowSum), normX = std::max(normX, std::fabs(x[i])), residual = std::max(residual, std::fabs(r));
        }
        EXPECT_LE(residual, 16.0 * n * DBL_EPSILON * normA * normX) << "order " << n;
    }
}

TEST(LUSolver, PivotRowsFollowScaledMagnitudeAndTiesKeepTheUpperRow) {
    struct Case { ValueMatrix a; std::vector<std::uint64_t> leadingPivots; };
    const std::vector<Case> cases = {
        {matrix(3, 3, {2, 1, 0, -2, 1, 1, 1, 0, 2}), {0}},   // rows 0 and 1 tie
        {matrix(3, 3, {1, 0, 4, 2, 1, 0, -2, 0, 1}), {1}},   // rows 1 and 2 tie, row 0 is weaker
        // Row 0 (scale 1/10) swaps down to row 2 and takes its scale along: 5/10 then loses
        // to row 1's 1/1 in column 1, where the left-behind scale 1/4 would have won.
        {matrix(3, 3, {1, 5, 10, 0.5, 1, 1, 4, 0, 1}), {2, 1}},
    };
    for (const Case& c : cases) {
        LUSolver lu;
        lu.factorize(c.a);
        for (std::size_t j = 0; j < c.leadingPivots.size(); ++j) EXPECT_EQ(lu.pivots()[j], c.leadingPivots[j]);
    }
}

TEST(LUSolver, SingularMatricesFailWithoutDividingByZero) {
    const std::vector<ValueMatrix> singular = {
        matrix(3, 3, {1, 2, 3, 0, 0, 0, 4, 5, 6}),                 // zero row: no elimination at all
        matrix(3, 3, {1, 2, 3, 4, 5, 6, 1, 2, 3}),                 // two equal rows: exact zero pivot
        matrix(3, 3, {0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 0.8, 0.9}),  // rank 2, pivot is rounding noise
        matrix(2, 2, {0, 0, 1e299, 1}),                            // scan stops before the huge row
    };
    for (const ValueMatrix& a : singular) {
        LUSolver lu;
        lu.factorize(a);
        EXPECT_FALSE(lu.isFactorized());
        for (std::uint64_t k = 0; k < a.rows() * a.columns(); ++k) EXPECT_TRUE(std::isfinite(lu.factors().data()[k]));
    }
}

// An element above the limit throws and leaves the flag of the last completed decomposition; a
// right-hand side entry below DBL_MIN never starts the forward elimination (exact x(1): -1e-310).
TEST(LUSolver, OverflowLimitAndDblMinThresholdsAreKept) {
    LUSolver lu;
    lu.factorize(matrix(3, 3, {1e298, 0, 0, 0, 1, 0, 0, 0, 1}));
    EXPECT_THAT([&] { lu.factorize(matrix(3, 3, {1, 0, 0, 0, 1e299, 0, 0, 0, 1})); },
                testing::ThrowsMessage<std::overflow_error>(testing::StrEq("Matrix elements too large")));
    EXPECT_TRUE(lu.isFactorized());
    lu.factorize(matrix(2, 2, {1, 0, 1, 1}));
    ValueArray x;
    lu.solve(array({1e-310, 0}), x);
    EXPECT_EQ(x[0], 1e-310);
    EXPECT_EQ(x[1], 0.0);
}
