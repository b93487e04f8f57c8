// What the Speciator tests and the sweep do not reach: zero and impossible totals, the iteration
// limit and unbalanced reactions, at the level of the solver itself.
#include "solver/LogSpeciationSolver.h"

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
    static const ReactionIndex& index() {
        static const SpeciesModel model;
        static const ReactionIndex shared(model.reactions);
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
