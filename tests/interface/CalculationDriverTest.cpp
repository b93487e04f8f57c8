#include "interface/CalculationDriver.h"

#include "BrineCatalog.h"
#include "database/SpeciesModel.h"
#include "solver/BasisReactionSet.h"
#include "solver/ChargeBalanceEquationMaker.h"
#include "tools/TestMatrices.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <sstream>
#include <string>
#include <vector>

using namespace korvane::Brinecast;
using brinecast_test::molal;
using korvane::ValueArray;
using korvane::tools::test::array;

TEST(CalculationDriver, StartsAtTheSmallerOfOneCentimolalAndTheTotalWithScalesFloored) {
    struct Case {
        ValueArray totals;
        std::vector<double> guess;
        double residualBound;  // the dissolved total times 1e-14, at least 1e-15
    };
    const Case cases[] = {
        {array({55.5, 0.0}), {0.01}, 1e-15},
        {array({55.5, 0.0, 0.5}), {0.01, 0.01}, 0.5e-14},  // two unknowns
        {array({55.5, 0.0, 0.0004, 0.0006}), {0.01, 0.0004, 0.0006}, 1e-15},  // 1e-17 is below the floor
        {array({55.5, 0.0, 0.004, 0.0, 1.0, NAN}), {0.01, 0.004, 0.0, 0.01, 0.01}, NAN},
    };
    for (const Case& c : cases) {
        const ValueArray x = initialGuess(c.totals, c.totals.size());
        EXPECT_EQ(std::vector<double>(x.begin(), x.end()), c.guess);
        const SolverScales scales = solverScales(x, c.totals, c.totals.size());
        EXPECT_EQ(scales.jacobianScale, 1e-15);  // every guess is at most 0.01
        if (!std::isnan(c.residualBound)) {
            EXPECT_DOUBLE_EQ(scales.residualBound, c.residualBound);
        }
    }
    const korvane::tools::NewtonSettings s = runSolverSettings({1e-15, 2e-15});
    EXPECT_EQ(std::vector<double>({double(s.trials), s.stepTolerance, double(s.staleLimit), s.residualBound,
                                   s.residualTolerance, s.maxRelativeStep, s.jacobianScale}),
              std::vector<double>({1000, 1e-18, 5, 2e-15, 1e-18, 0.5, 1e-15}));
}

// pH of textbook waters with ideal activities.
TEST(CalculationDriver, KnownWatersHaveTheirTextbookPH) {
    const std::pair<Input, double> cases[] = {
        {molal({}, 298.15), 7.00},  // pKw 14.00 at 25 °C
        {molal({}, 333.15), 6.51},  // pKw 13.02 at 60 °C (Bandura and Lvov 2006)
        {molal({{"Na", 0.1}, {"Cl", 0.1}}), 7.00},
        {molal({{"Na", 0.001}, {"C", 0.001}}), 8.30},  // an ampholyte: (pK1 + pK2) / 2 = (6.35 + 10.33) / 2
    };
    for (const auto& [input, pH] : cases) EXPECT_NEAR(getPH(input), pH, 0.05) << input.temperature;
}

// Over the catalogue: the species, weighted by their coefficients (ZnCl2 holds two Cl), add up to
// every total and are neutral within the bound the solver accepts; every species is listed once
// per component it contains, largest first; getPH is run's pH.
TEST(CalculationDriver, SolvedBrinesCloseTheirBalancesAndListEverySpecies) {
    for (const auto& brine : brinecast_test::loadBrines(BRINECAST_TEST_BRINES, "/no/engine/needed")) {
        SpeciesModel model;
        const SolverReport report = solveSpeciation(brine.input, model);
        const BasisReactionSet& set = *model.basisReactionSet;
        const ValueArray m = model.equationMaker->speciesValues(model.solution);
        std::map<std::string, int> expectedCount, listedCount;
        for (std::size_t j = 2; j < model.basisNames.size(); ++j) {
            double sum = 0.0;
            for (std::size_t k = 0; k < set.speciesCount(); ++k) {
                sum += set.coefficient(j, k) * m[k];
                expectedCount[set.speciesNames()[k]] += std::fabs(set.coefficient(j, k)) > 1e-8;
            }
            EXPECT_LE(std::fabs(sum - model.equationMaker->totals()[j]), report.residualBound) << brine.name << " " << j;
        }
        EXPECT_LE(std::fabs(model.equationMaker->chargeSum(m)), report.residualBound) << brine.name;

        const Output output = run(brine.input);
        for (const NameValue& entry : output.species.values) ++listedCount[entry.name];
        for (auto& [name, count] : expectedCount) EXPECT_EQ(listedCount[name], count) << brine.name << " " << name;
        for (const SpeciesGroup& group : groupSpecies(model)) {
            EXPECT_TRUE(std::is_sorted(group.species.begin(), group.species.end(),
                                       [](const NameValue& a, const NameValue& b) { return a.value > b.value; }));
        }
        EXPECT_EQ(output.species.unit, MolPerKgw);
        EXPECT_EQ(output.pH, -std::log10(model.solution[1]));
        EXPECT_EQ(getPH(brine.input), output.pH);
    }
}

// The report lists pH, then each basis name with its species indented by three spaces.
TEST(CalculationDriver, EachCalculationReplacesTheWorkingFieldsAndCopiesAreDeep) {
    SpeciesModel model;
    // The same gas twice beside its element leaves one total unused (watched by the sanitizers).
    solveSpeciation(molal({{"Na", 0.01}, {"C", 0.004}}, 298.15, {{"CO2", 0.003}, {"CO2", 0.003}}), model);
    EXPECT_EQ(model.basisNames, (std::vector<std::string>{"H2O", "H+", "Na+", "CO3-2"}));
    EXPECT_DOUBLE_EQ(model.equationMaker->totals()[3], 0.01);
    const SpeciesModel copy = model;
    solveSpeciation(molal({}), model);
    EXPECT_DOUBLE_EQ(model.solution[0], 1000.0 / 18.01528);
    EXPECT_EQ(model.basisReactionSet->speciesNames(), (std::vector<std::string>{"H+", "H2O", "OH-"}));
    EXPECT_EQ(copy.basisReactionSet->basisCount(), 4u);
    std::ostringstream pH;
    pH << "pH=" << -std::log10(model.solution[1]) << "\n";
    EXPECT_EQ(model.solutionReport().rfind(pH.str(), 0), 0u) << model.solutionReport();
    EXPECT_NE(copy.solutionReport().find("CO3-2:\n   HCO3- 0.00"), std::string::npos) << copy.solutionReport();
}
