#include "tools/CombinedSolver.h"

#include "tools/DirectSolver.h"
#include "tools/LUSolver.h"
#include "tools/TestMatrices.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>

using namespace korvane::tools;
using korvane::ValueArray;
using korvane::tools::test::array;
using korvane::tools::test::matrix;
using testing::StrEq;
using testing::ThrowsMessage;

namespace {
const char* const kNotImplemented = "The method or operation is not implemented.";
}

// The two paths are told apart by what only one of them does: the LU copies b into x and
// resizes it, the closed-form solver writes only the inverse's rows.
TEST(CombinedSolver, RoutesByTheOrderOfTheLastFactorizedMatrix) {
    CombinedSolver combined;
    ValueArray x;
    combined.solve(array({1, 2}), x);  // order 0: closed form with nothing stored, x untouched
    EXPECT_EQ(combined.order(), 0u);
    EXPECT_EQ(x.size(), 0u);

    combined.factorize(matrix(3, 3, {2, 0, 0, 0, 4, 0, 0, 0, 8}));
    EXPECT_TRUE(combined.lu().isFactorized());
    combined.solve(array({2, 2, 2}), x);
    ASSERT_EQ(x.size(), 3u);
    EXPECT_EQ(x[2], 0.25);

    ValueMatrix small = matrix(2, 2, {2, 0, 0, 4});
    combined.factorize(std::move(small));
    EXPECT_EQ(small.rows(), 0u);  // handed over, not copied
    EXPECT_EQ(combined.order(), 2u);
    x = ValueArray(3);
    combined.solve(array({2, 2}), x);
    EXPECT_EQ(x[0], 1.0);
    EXPECT_EQ(x[1], 0.5);
    EXPECT_EQ(x.size(), 3u);  // the LU would have shrunk x to two entries
}

TEST(CombinedSolver, UnsupportedOperationsAreRejected) {
    LUSolver lu;
    DirectSolver direct;
    CombinedSolver beforeFactorize;
    CombinedSolver onLU;
    onLU.factorize(matrix(3, 3, {1, 0, 0, 0, 1, 0, 0, 0, 1}));
    ILinearEquationSolver* const solvers[] = {&lu, &direct, &beforeFactorize, &onLU};
    for (ILinearEquationSolver* solver : solvers) {
        EXPECT_THAT([&] { solver->unimplementedOperation(ValueArray(1)); },
                    ThrowsMessage<std::logic_error>(StrEq(kNotImplemented)));
    }
    ValueMatrix X;
    ILinearEquationSolver* const withoutMatrixSolve[] = {&lu, &onLU};
    for (ILinearEquationSolver* solver : withoutMatrixSolve) {
        EXPECT_THAT([&] { solver->solve(ValueMatrix(3, 1), X); }, ThrowsMessage<std::logic_error>(StrEq(kNotImplemented)));
    }
}
