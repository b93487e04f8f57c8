// What the Speciator tests and the sweep do not reach: zero and impossible totals, the iteration
// limit and unbalanced reactions, at the level of the solver itself.
#include "solver/LogSpeciationSolver.h"

#include "RandomBrines.h"
#include "database/SpeciesModel.h"
#include "solver/ReactionIndex.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

using namespace korvane::Brinecast;
using korvane::ValueArray;

namespace {

/// A solved brine: basis "H2O", "H+", then `solutes` with `amounts` (mol/kgw).
struct Solved {
    Solved(std::vector<std::string> solutes, const std::vector<double>& amounts, double temperatureK = 298.15,
           std::uint64_t iterationLimit = 100)
        : system(index().select(basis(solutes), temperatureK)), totals(amounts.size() + 2) {
        totals[0] = 1000.0 / 18.01528;  // mol of water per kg
        for (std::size_t i = 0; i < amounts.size(); ++i) totals[i + 2] = amounts[i];
        LogSpeciationSolver solver(system, totals, 0.0);
        outcome = solver.solve(1e-12, iterationLimit);
        molalities = solver.molalities();
        free = solver.freeMolalities();
    }
    double molality(const std::string& species) const {
        for (std::size_t k = 0; k < system.speciesCount(); ++k) {
            if (*system.speciesNames[k] == species) return molalities[k];
        }
        ADD_FAILURE() << species << " is not in the system";
        return NAN;
    }
    static const SpeciesModel& model() {
        static const SpeciesModel shared;
        return shared;
    }
    static const ReactionIndex& index() {
        static const ReactionIndex shared(model().reactions);
        return shared;
    }
    static std::vector<std::string> basis(std::vector<std::string> solutes) {
        solutes.insert(solutes.begin(), {"H2O", "H+"});
        return solutes;
    }

    SpeciationSystem system;
    ValueArray totals;
    LogSolverOutcome outcome;
    std::vector<double> molalities;
    ValueArray free;
};

}  // namespace

TEST(LogSpeciationSolver, ZeroTotalLeavesTheUnknownsAndZeroesItsSpecies) {
    const Solved without({"Na+", "Cl-", "CO3-2"}, {1.0, 1.0, 0.01}, 330.0);
    const Solved with({"Na+", "Ba+2", "Cl-", "CO3-2", "SO4-2"}, {1.0, 0.0, 1.0, 0.01, 0.0}, 330.0);
    ASSERT_TRUE(with.outcome.converged);
    for (const char* zero : {"Ba+2", "BaCO3", "BaOH+", "SO4-2", "NaSO4-", "HSO4-"}) EXPECT_EQ(with.molality(zero), 0.0) << zero;
    EXPECT_EQ(with.free[2], 0.0);  // free Ba+2, basis name 3
    EXPECT_NEAR(with.free[0] / without.free[0], 1.0, 1e-12);
    for (const char* species : {"Na+", "NaCO3-", "HCO3-", "CO2", "OH-"})
        EXPECT_NEAR(with.molality(species) / without.molality(species), 1.0, 1e-10) << species;
}

TEST(LogSpeciationSolver, TotalThatCannotBeMetOrALimitOfNoIterationsSolvesNothing) {
    for (double impossible : {-1e-3, std::nan(""), HUGE_VAL}) {
        const Solved brine({"Na+", "Cl-"}, {1.0, impossible});
        EXPECT_FALSE(brine.outcome.converged);
        EXPECT_EQ(brine.outcome.iterations, 0u);
        EXPECT_TRUE(std::isnan(brine.free[0]) && std::isnan(brine.molality("Na+")));
    }
    const Solved stopped({"Na+", "Ca+2", "Cl-", "SO4-2"}, {0.5, 0.05, 0.5, 0.05}, 298.15, 0);
    EXPECT_FALSE(stopped.outcome.converged);
    EXPECT_EQ(stopped.outcome.iterations, 0u);
}

TEST(LogSpeciationSolver, RefusesReactionsThatDoNotConserveCharge) {
    const SpeciesModel model(R"([{"stoich": {"H+": 1}}, {"stoich": {"H2O": 1}}, {"stoich": {"Na+": 1}},
        {"stoich": {"Na+": -1, "H2O": -1, "NaOH+": 1, "H+": 1}, "log_k": -14}])");
    const ReactionIndex index(model.reactions);  // outlives the system, which names its species
    const SpeciationSystem system = index.select({"H2O", "H+", "Na+"}, 298.15);
    ASSERT_NE(system.chargeNotConserved, nullptr);
    EXPECT_EQ(*system.chargeNotConserved, "NaOH+");
    try {
        LogSpeciationSolver solver(system, ValueArray(3), 0.0);
        ADD_FAILURE() << "accepted";
    } catch (const std::logic_error& e) {
        EXPECT_NE(std::string(e.what()).find("\"NaOH+\""), std::string::npos) << e.what();
    }
}

namespace {

/// A solve that claims convergence must hand back numbers that close the balances: every free
/// molality and molality finite, the mass balances within `tolerance` of the totals.
void expectConvergedMeansSolved(const SpeciationSystem& system, const ValueArray& totals, const std::string& what) {
    LogSpeciationSolver solver(system, totals, 0.0);
    const LogSolverOutcome outcome = solver.solve(1e-10, 200);
    if (!outcome.converged) return;
    const ValueArray free = solver.freeMolalities();
    for (double x : free) EXPECT_TRUE(std::isfinite(x)) << what << ": free molality " << x;
    for (double m : solver.molalities()) ASSERT_TRUE(std::isfinite(m)) << what << ": molality " << m;
    const double pH = -std::log10(free[0]);
    EXPECT_TRUE(std::isfinite(pH)) << what << ": pH " << pH;
    for (std::size_t j = 2; j < system.basisCount; ++j) {
        double sum = 0.0;
        for (std::size_t k = 0; k < system.speciesCount(); ++k) sum += system.coefficient(j, k) * solver.molalities()[k];
        EXPECT_LE(std::fabs(sum - totals[j]), 1e-9 * totals[j]) << what << ": balance of basis " << j;
    }
}

ValueArray totalsOf(const std::vector<double>& amounts) {
    ValueArray totals(amounts.size() + 2);
    totals[0] = 1000.0 / 18.01528;  // mol of water per kg
    for (std::size_t i = 0; i < amounts.size(); ++i) totals[i + 2] = amounts[i];
    return totals;
}

}  // namespace

// Totals far beyond any brine: the starting point must not square the net charge into infinity,
// and no comparison of infinities may pass for convergence.
TEST(LogSpeciationSolver, HostileTotalsNeverConvergeToNumbersThatAreNot) {
    struct Row {
        const char* what;
        std::vector<std::string> solutes;
        std::vector<double> amounts;  // mol/kgw
    };
    const Row rows[] = {
        {"net charge +2e154", {"Na+", "Cl-"}, {2e154, 1e-3}},
        {"net charge -2e154", {"Na+", "Cl-"}, {1e-3, 2e154}},
        {"net charge +1e300", {"Na+"}, {1e300}},
        {"charge sum overflows", {"Na+", "Ca+2"}, {1e308, 1.7e308}},
        {"balanced 1e200", {"Na+", "Cl-"}, {1e200, 1e200}},
        {"tiny against huge", {"Na+", "Cl-", "CO3-2"}, {1e-300, 1e150, 1e-3}},
    };
    for (const Row& row : rows) {
        const SpeciationSystem system = Solved::index().select(Solved::basis(row.solutes), 298.15);
        expectConvergedMeansSolved(system, totalsOf(row.amounts), row.what);
    }
}

// A reaction constant past the largest double makes its species infinite at every point: the
// solver must say so instead of reporting the step it could not take as a small one.
TEST(LogSpeciationSolver, OverflowingReactionConstantIsNoSolution) {
    const SpeciesModel model(R"([{"stoich": {"H+": 1}}, {"stoich": {"H2O": 1}}, {"stoich": {"Na+": 1}},
        {"stoich": {"Cl-": 1}}, {"stoich": {"H2O": -1, "OH-": 1, "H+": 1}, "log_k": -14},
        {"stoich": {"Na+": -1, "Cl-": -1, "NaCl": 1}, "log_k": 400}])");
    const ReactionIndex index(model.reactions);
    const SpeciationSystem system = index.select({"H2O", "H+", "Na+", "Cl-"}, 298.15);
    for (double amount : {1e-6, 0.5, 6.0}) {
        LogSpeciationSolver solver(system, totalsOf({amount, amount}), 0.0);
        EXPECT_FALSE(solver.solve(1e-10, 200).converged) << amount;
    }
}

// Every random brine scaled far out of range: whatever the solver reports, "converged" holds.
TEST(LogSpeciationSolver, ConvergedMeansFiniteOnRandomBrinesScaledOutOfRange) {
    const SpeciesModel& model = Solved::model();
    for (double scale : {1e-300, 1e-30, 1e30, 1e154, 1e300}) {
        for (const korvane::Brinecast::Input& brine : brinecast_test::randomBrines(15, 7)) {
            std::vector<std::string> solutes;
            std::vector<double> amounts;
            for (const auto& element : brine.elements.values) {
                solutes.push_back(model.elementTable().basisSpecies(element.name));
                amounts.push_back(element.value * scale);
            }
            const SpeciationSystem system = Solved::index().select(Solved::basis(solutes), brine.temperature);
            expectConvergedMeansSolved(system, totalsOf(amounts), "scale " + std::to_string(scale));
        }
    }
}
