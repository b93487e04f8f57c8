#include "solver/LogSpeciationSolver.h"

#include "database/SpeciesModel.h"
#include "solver/ReactionIndex.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <string>
#include <vector>

using korvane::ValueArray;
using korvane::Brinecast::LogSolverOutcome;
using korvane::Brinecast::LogSpeciationSolver;
using korvane::Brinecast::ReactionIndex;
using korvane::Brinecast::SpeciationSystem;
using korvane::Brinecast::SpeciesModel;
using Names = std::vector<std::string>;

namespace {

const ReactionIndex& embeddedIndex() {
    static const SpeciesModel model;
    static const ReactionIndex index(model.reactions);
    return index;
}

constexpr double kWater = 1000.0 / 18.01528;  // mol per kg of water
constexpr double kTolerance = 1e-12;

/// One solved brine: basis "H2O", "H+", then `solutes` with `amounts` (mol/kgw).
struct Solved {
    Solved(const Names& solutes, const std::vector<double>& amounts, double temperatureK, double tolerance = kTolerance,
           std::uint64_t iterationLimit = 100)
        : basis(withWaterAndHydrogen(solutes)),
          totals(totalsOf(amounts)),
          system(embeddedIndex().select(basis, temperatureK)),
          solver(system, totals, 0.0),
          outcome(solver.solve(tolerance, iterationLimit)),
          x(solver.freeMolalities()) {}

    double molality(const std::string& species) const {
        for (std::size_t k = 0; k < system.speciesCount(); ++k) {
            if (*system.speciesNames[k] == species) return solver.molalities()[k];
        }
        ADD_FAILURE() << species << " is not in the system";
        return 0.0;
    }
    double pH() const { return -std::log10(x[0]); }
    /// Largest |Σ A(j,k)·m_k − T_j| / T_j over the components with a total.
    double massBalanceError() const {
        double worst = 0.0;
        for (std::size_t j = 2; j < basis.size(); ++j) {
            if (totals[j] == 0.0) continue;
            double sum = 0.0;
            for (std::size_t k = 0; k < system.speciesCount(); ++k) sum += system.coefficient(j, k) * solver.molalities()[k];
            worst = std::max(worst, std::fabs(sum - totals[j]) / totals[j]);
        }
        return worst;
    }
    double chargeImbalance() const {
        double charge = 0.0, equivalents = 0.0;
        for (std::size_t k = 0; k < system.speciesCount(); ++k) {
            charge += system.charges[k] * solver.molalities()[k];
            equivalents += std::abs(system.charges[k]) * solver.molalities()[k];
        }
        return std::fabs(charge) / equivalents;
    }

    static Names withWaterAndHydrogen(const Names& solutes) {
        Names names{"H2O", "H+"};
        names.insert(names.end(), solutes.begin(), solutes.end());
        return names;
    }
    static ValueArray totalsOf(const std::vector<double>& amounts) {
        ValueArray t(amounts.size() + 2);
        t[0] = kWater;
        for (std::size_t i = 0; i < amounts.size(); ++i) t[i + 2] = amounts[i];
        return t;
    }

    Names basis;
    ValueArray totals;
    SpeciationSystem system;
    LogSpeciationSolver solver;
    LogSolverOutcome outcome;
    ValueArray x;
};

const Names seawaterSolutes{"Na+", "Mg+2", "Ca+2", "K+", "Sr+2", "Cl-", "SO4-2", "CO3-2", "Br-"};
const std::vector<double> seawater{0.4860, 0.0547, 0.0107, 0.0106, 9.4e-5, 0.5658, 0.0293, 0.00242, 8.7e-4};

}  // namespace

TEST(LogSpeciationSolver, PureWaterIsNeutralAtEveryTemperature) {
    for (double temperatureK : {273.15, 298.15, 373.15, 473.15}) {
        const Solved water({}, {}, temperatureK);
        ASSERT_TRUE(water.outcome.converged) << temperatureK;
        EXPECT_NEAR(water.molality("OH-") / water.molality("H+"), 1.0, 1e-12) << temperatureK;
    }
}

TEST(LogSpeciationSolver, BalancesCloseFromFreshWaterToSaturatedBrine) {
    struct Case {
        Names solutes;
        std::vector<double> amounts;  // mol/kgw
        double temperatureK;
    };
    const Case cases[] = {
        {{"Na+", "Cl-"}, {1e-4, 1e-4}, 298.15},
        {seawaterSolutes, seawater, 298.15},
        {{"Na+", "Cl-", "Ca+2"}, {3.8, 3.8, 0.2}, 398.15},  // the estimated Jacobian loses these two
        {{"Na+", "Cl-"}, {3.55, 3.55}, 468.15},
        {{"Na+", "Cl-"}, {6.0, 6.0}, 273.15},
        {{"Zn+2", "Cl-", "HS-", "CO3-2", "Fe+2"}, {0.5, 5.0, 1e-3, 0.2, 0.1}, 473.15},
        {{"Ca+2", "SO4-2", "Ba+2", "Sr+2"}, {1e-9, 2.0, 1e-9, 3.0}, 323.15},
        {{"Na+"}, {1.0}, 298.15},        // the excess cation is taken up by OH-
        {{"Cl-", "CO3-2"}, {2.0, 1.0}, 350.0},  // and an excess anion by H+
    };
    for (const Case& c : cases) {
        const Solved brine(c.solutes, c.amounts, c.temperatureK);
        SCOPED_TRACE(testing::Message() << c.solutes.front() << " " << c.amounts.front() << " at " << c.temperatureK << " K");
        ASSERT_TRUE(brine.outcome.converged);
        EXPECT_LE(brine.massBalanceError(), kTolerance);
        EXPECT_LE(brine.chargeImbalance(), kTolerance);
        EXPECT_GT(brine.pH(), -1.0);
        EXPECT_LT(brine.pH(), 16.0);
        EXPECT_LE(brine.outcome.iterations, 30u);
    }
    EXPECT_NEAR(Solved({"Na+"}, {1.0}, 298.15).molality("OH-"), 1.0, 1e-6);
}

TEST(LogSpeciationSolver, ZeroTotalLeavesTheUnknownsAndZeroesItsSpecies) {
    const Solved without({"Na+", "Cl-", "CO3-2"}, {1.0, 1.0, 0.01}, 330.0);
    const Solved with({"Na+", "Ba+2", "Cl-", "CO3-2", "SO4-2"}, {1.0, 0.0, 1.0, 0.01, 0.0}, 330.0);
    ASSERT_TRUE(with.outcome.converged);
    for (const char* zero : {"Ba+2", "BaCO3", "BaHCO3+", "BaOH+", "SO4-2", "NaSO4-", "HSO4-"}) EXPECT_EQ(with.molality(zero), 0.0) << zero;
    EXPECT_EQ(with.x[2], 0.0);  // free Ba+2, basis name 3
    EXPECT_NEAR(with.pH(), without.pH(), 1e-12);
    for (const char* species : {"Na+", "NaCO3-", "HCO3-", "CO2", "OH-"})
        EXPECT_NEAR(with.molality(species) / without.molality(species), 1.0, 1e-10) << species;
}

TEST(LogSpeciationSolver, TotalThatCannotBeMetIsNotSolved) {
    for (double impossible : {-1e-3, std::nan(""), HUGE_VAL}) {
        const Solved brine({"Na+", "Cl-"}, {1.0, impossible}, 298.15);
        EXPECT_FALSE(brine.outcome.converged);
        EXPECT_EQ(brine.outcome.iterations, 0u);
        EXPECT_TRUE(std::isnan(brine.pH()));
        EXPECT_TRUE(std::isnan(brine.molality("Na+")));
    }
}

TEST(LogSpeciationSolver, StopsAtTheIterationLimitWithoutClaimingConvergence) {
    const Solved brine(seawaterSolutes, seawater, 298.15, kTolerance, 0);
    EXPECT_FALSE(brine.outcome.converged);
    EXPECT_EQ(brine.outcome.iterations, 0u);
    // A tolerance below what doubles can show is never met.
    EXPECT_FALSE(Solved(seawaterSolutes, seawater, 298.15, 1e-30, 40).outcome.converged);
}

TEST(LogSpeciationSolver, RefusesReactionsThatDoNotConserveCharge) {
    const SpeciesModel model(R"([{"stoich": {"H+": 1}}, {"stoich": {"H2O": 1}}, {"stoich": {"Na+": 1}},
        {"stoich": {"Na+": -1, "H2O": -1, "NaOH+": 1, "H+": 1}, "log_k": -14}])");
    const ReactionIndex index(model.reactions);
    const SpeciationSystem system = index.select({"H2O", "H+", "Na+"}, 298.15);
    try {
        LogSpeciationSolver solver(system, Solved::totalsOf({0.1}), 0.0);
        ADD_FAILURE() << "accepted";
    } catch (const std::logic_error& e) {
        EXPECT_NE(std::string(e.what()).find("\"NaOH+\""), std::string::npos) << e.what();
    }
}
