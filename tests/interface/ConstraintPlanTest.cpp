// Measured pH, alkalinity and a charge-closing ion through the public API: what is refused and
// why, what a result reports about them, and the batch that takes one set per analysis.
#include "SharedSpeciator.h"
#include <korvane/Speciator.h>

#include "BrineCatalog.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

using namespace korvane::Brinecast;
using brinecast_test::molal;

namespace {

using brinecast_test::speciator;

/// Seawater-like, with 0.038 eq/kgw more cations than the anions carry at pH 7.5.
Input imbalanced() {
    return molal({{"Na", 0.50}, {"K", 0.01}, {"Ca", 0.01}, {"Mg", 0.05}, {"Cl", 0.55}, {"S(6)", 0.02}, {"C", 0.002}});
}

Constraints constraints(std::optional<double> pH, std::optional<double> alkalinity = {}, std::string balanceWith = {}) {
    Constraints c;
    c.pH = pH;
    c.alkalinity = alkalinity;
    c.balanceWith = std::move(balanceWith);
    return c;
}

std::string refusal(const Input& input, const Constraints& c, Method method, ActivityModel model) {
    SolveOptions options;
    options.method = method;
    options.activity = model;
    try {
        speciator().speciate(input, c, options);
    } catch (const std::invalid_argument& e) {
        return e.what();
    }
    return "accepted";
}

}  // namespace

TEST(ConstraintPlan, NonsenseIsRefusedNamingTheValue) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    struct Case {
        Constraints constraints;
        Method method;
        const char* message;
    };
    const Case cases[] = {
        {constraints(nan), Method::Robust, "Constraints::pH is nan; a measured pH must be a number from 0 to 14."},
        {constraints(14.5), Method::Robust, "Constraints::pH is 14.5; a measured pH must be a number from 0 to 14."},
        {constraints(7.0, std::numeric_limits<double>::infinity()), Method::Robust,
         "Constraints::alkalinity is inf eq/kgw; it must be a finite number, for example 0.002."},
        {constraints({}, 0.002), Method::Robust,
         "Constraints::alkalinity (0.002 eq/kgw) needs the measured pH in Constraints::pH: total carbon follows from "
         "the two together."},
        {constraints({}, {}, "Cl"), Method::Robust,
         "Constraints::balanceWith (\"Cl\") needs a measured pH in Constraints::pH: without one the charge balance "
         "sets the pH and has no imbalance left to close."},
        {constraints(7.0), Method::Specified,
         "Method::Specified finds the pH from the charge balance only; use Method::Robust or Method::Auto to impose "
         "a measured pH or alkalinity."},
        {constraints(7.0, {}, "Br"), Method::Robust,
         "Constraints::balanceWith is \"Br\", which is not a component of the analysis with a positive amount; name "
         "one that is, such as \"Cl\" or \"Na\"."},
        {constraints(7.0, 0.002, "C"), Method::Robust,
         "Constraints::balanceWith is \"C\", whose total the alkalinity already sets; close the balance with another "
         "ion, such as \"Cl\" or \"Na\"."},
        {constraints(7.5, {}, "K"), Method::Robust,
         "Closing the charge balance at pH 7.5 with \"K\" would need a negative amount of it: the analysis already "
         "carries excess positive charge; name an ion of the other sign, or leave Constraints::balanceWith empty to "
         "report the imbalance."},
        {constraints(9.0, -1e-3), Method::Robust,
         "Constraints::alkalinity is -0.001 eq/kgw, below the "},
    };
    for (ActivityModel model : {ActivityModel::Ideal, ActivityModel::Pitzer}) {
        for (const Case& c : cases) {
            // Method::Specified knows ideal activities only, and says so first.
            if (c.method == Method::Specified && model != ActivityModel::Ideal) continue;
            const std::string message = refusal(imbalanced(), c.constraints, c.method, model);
            EXPECT_EQ(message.substr(0, std::string(c.message).size()), c.message) << static_cast<int>(model);
        }
    }
}

TEST(ConstraintPlan, ClosingIonClosesTheChargeBalanceAndReportsTheChange) {
    for (ActivityModel model :
         {ActivityModel::Ideal, ActivityModel::Davies, ActivityModel::DebyeHuckel, ActivityModel::Pitzer}) {
        SCOPED_TRACE(static_cast<int>(model));
        SolveOptions options;
        options.activity = model;
        const Result free = speciator().speciate(imbalanced(), constraints(7.5), options);
        ASSERT_TRUE(free.diagnostics.converged);
        EXPECT_GT(free.diagnostics.chargeImbalance, 1e-3);  // reported, not closed

        const Result closed = speciator().speciate(imbalanced(), constraints(7.5, {}, "Cl"), options);
        ASSERT_TRUE(closed.diagnostics.converged);
        EXPECT_EQ(closed.output.pH, 7.5);
        EXPECT_LE(closed.diagnostics.chargeImbalance, 1e-10);
        EXPECT_LE(closed.diagnostics.massBalanceError, 1e-10);
        const ConstraintOutcome& outcome = closed.constraints;
        EXPECT_EQ(outcome.balancedWith, "Cl");
        EXPECT_NEAR(outcome.balancedTotal, 0.55 + outcome.balanceAdjustment, 1e-15);
        // The 0.038 eq/kgw of excess cations, less what carbonate takes up beyond HCO3- at pH 7.5.
        EXPECT_NEAR(outcome.balanceAdjustment, 0.038, 0.001);

        // Both rows at once: carbon from the alkalinity and Cl from the charge balance.
        const Result both = speciator().speciate(imbalanced(), constraints(7.5, 0.0025, "Cl"), options);
        ASSERT_TRUE(both.diagnostics.converged);
        EXPECT_LE(both.diagnostics.chargeImbalance, 1e-10);
        EXPECT_NEAR(both.alkalinity, 0.0025, 1e-12);
        EXPECT_TRUE(both.constraints.alkalinityImposed);
        EXPECT_GT(both.constraints.derivedCarbon, 0.002);  // HCO3- counts 1, its complexes take some
        EXPECT_LT(both.constraints.balanceAdjustment, outcome.balanceAdjustment);  // more carbonate, less Cl
    }
}

TEST(ConstraintPlan, BatchTakesOneConstraintsPerInput) {
    const std::vector<Input> inputs(3, imbalanced());
    try {
        speciator().speciateBatch(inputs, std::vector<Constraints>(2), {}, 2);
        FAIL() << "accepted";
    } catch (const std::invalid_argument& e) {
        EXPECT_STREQ(e.what(), "speciateBatch has 3 inputs and 2 constraints; give one Constraints per input, in the "
                               "same order.");
    }
    const std::vector<Constraints> each = {constraints(6.5, {}, "Cl"), Constraints{}, constraints(8.0, {}, "K")};
    const std::vector<BatchItem> items = speciator().speciateBatch(inputs, each, {}, 2);
    ASSERT_EQ(items.size(), 3u);
    EXPECT_TRUE(items[0].ok());
    EXPECT_EQ(items[0].result.output.pH, 6.5);
    EXPECT_EQ(items[1].result.output.pH, speciator().speciate(inputs[1]).output.pH);
    EXPECT_FALSE(items[2].ok());  // K, 0.01 mol/kgw, cannot take up 0.038 eq/kgw of excess cations
    EXPECT_NE(items[2].errorMessage.find("with \"K\" would need a negative amount"), std::string::npos);
}

TEST(ConstraintPlan, RowsConvergeAtTheEdgesOfWhatTheyCanSet) {
    // A carbon-free water given its own alkalinity needs no carbon; a trace of chloride closes a
    // balance of 0.5 eq/kgw only to the tolerance of that balance, not of itself.
    const Input noCarbon = molal({{"Na", 0.5}, {"S(6)", 0.25}, {"S(-2)", 1e-3}}, 420.0);
    const Input traceChloride = molal({{"Na", 0.5}, {"S(6)", 0.25}, {"Cl", 1e-9}, {"C", 1e-3}}, 420.0);
    const Result own = speciator().speciate(noCarbon);
    const Result carbonFree = speciator().speciate(noCarbon, constraints(own.output.pH, own.alkalinity));
    EXPECT_TRUE(carbonFree.diagnostics.converged);
    EXPECT_LT(carbonFree.constraints.derivedCarbon, 1e-12);
    const double pH = speciator().speciate(traceChloride).output.pH;
    const Result trace = speciator().speciate(traceChloride, constraints(pH, {}, "Cl"));
    EXPECT_TRUE(trace.diagnostics.converged);
    EXPECT_NEAR(trace.constraints.balancedTotal, 1e-9, 1e-10);
}
