#include "tools/CombinedSolver.h"

#include "tools/DirectSolver.h"
#include "tools/LUSolver.h"
#include "tools/TestMatrices.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>
#include <vector>

using namespace korvane::tools;
using korvane::ValueArray;
using korvane::tools::test::array;
using korvane::tools::test::matrix;
using testing::StrEq;
using testing::ThrowsMessage;

// The LU copies b into x and resizes it; the closed form writes only the inverse's rows.
TEST(CombinedSolver, RoutesByTheOrderOfTheLastFactorizedMatrix) {
    CombinedSolver combined;
    ValueArray x;
    combined.factorize(matrix(3, 3, {2, 0, 0, 0, 4, 0, 0, 0, 8}));
    combined.solve(array({2, 2, 2}), x);
    ASSERT_EQ(x.size(), 3u);
    EXPECT_EQ(x[2], 0.25);
    ValueMatrix small = matrix(2, 2, {2, 0, 0, 4});
    combined.factorize(std::move(small));
    EXPECT_EQ(small.rows(), 0u);  // handed over, not copied
    x = ValueArray(3);
    combined.solve(array({2, 2}), x);
    EXPECT_EQ(std::vector<double>(x.begin(), x.end()), (std::vector<double>{1.0, 0.5, 0.0}));
}

TEST(CombinedSolver, UnsupportedOperationsAreRejected) {
    LUSolver lu;
    DirectSolver direct;
    CombinedSolver onLU;
    onLU.factorize(matrix(3, 3, {1, 0, 0, 0, 1, 0, 0, 0, 1}));
    const auto notImplemented = ThrowsMessage<std::logic_error>(StrEq("The method or operation is not implemented."));
    for (ILinearEquationSolver* solver : {static_cast<ILinearEquationSolver*>(&lu), static_cast<ILinearEquationSolver*>(&direct),
                                          static_cast<ILinearEquationSolver*>(&onLU)})
        EXPECT_THAT([&] { solver->unimplementedOperation(ValueArray(1)); }, notImplemented);
    ValueMatrix X;
    EXPECT_THAT([&] { onLU.solve(ValueMatrix(3, 1), X); }, notImplemented);
}
