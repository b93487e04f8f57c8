#include "solver/ChargeBalanceEquationMaker.h"

#include "database/EquilibriumConstants.h"
#include "database/SpeciesModel.h"
#include "tools/TestMatrices.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

using namespace korvane::Brinecast;
using korvane::ValueArray;
using korvane::tools::test::array;

namespace {

const SpeciesModel& embeddedModel() {
    static const SpeciesModel model;
    return model;
}

struct Equations {
    Equations(const std::vector<std::string>& basis, const ValueArray& totals, double temperatureK = 298.15)
        : set(embeddedModel().reactions, basis, temperatureK), maker(set, basis, totals, embeddedModel()) {}
    /// K of the reaction that forms `species`, as the database writes it.
    double k(const std::string& species) const {
        for (const auto& record : set.records())
            if (record.name == species) return std::pow(10.0, logKAt(record, set.temperature()));
        return std::nan("");
    }
    BasisReactionSet set;
    ChargeBalanceEquationMaker maker;
};

/// The residuals by the plain formula: every sum over every basis name and every species.
std::vector<double> plainResiduals(const BasisReactionSet& set, const ValueArray& totals, const ValueArray& x) {
    const std::size_t n = set.basisCount(), species = set.speciesCount();
    std::vector<double> la(n), m(species), r;
    la[0] = std::log10(1000.0 / 18.01528 * (18.01528 / 1000.0));
    for (std::size_t j = 1; j < n; ++j) la[j] = std::log10(x[j - 1]);
    for (std::size_t k = 0; k < species; ++k) {
        double sum = 0.0;
        for (std::size_t j = 0; j < n; ++j) sum += set.coefficient(j, k) * la[j];
        m[k] = std::pow(10.0, set.logKValues()[k] + sum);
    }
    for (std::size_t j = 2; j <= n; ++j) {
        double sum = 0.0;
        for (std::size_t k = 0; k < species; ++k) sum += (j < n ? set.coefficient(j, k) : set.charges()[k]) * m[k];
        r.push_back(j < n ? sum - totals[j] : sum);
    }
    return r;
}

const std::vector<std::string> brineBasis{"H2O", "H+", "Na+", "Ca+2", "Mg+2", "Fe+2", "Zn+2", "Cl-", "CO3-2", "SO4-2", "HS-"};

}  // namespace

TEST(ChargeBalanceEquationMaker, CarbonateResidualsAreMassAndChargeBalanceByMassAction) {
    const double totalC = 0.003, c = 1e-4;  // mol/kgw
    for (double temperatureK : {298.15, 353.15}) {
        const Equations carbonate({"H2O", "H+", "CO3-2"}, array({55.508, 0.0, totalC}), temperatureK);
        for (double h : {1e-10, 1e-8, 1e-6}) {
            const double hco3 = carbonate.k("HCO3-") * h * c, co2 = carbonate.k("CO2") * h * h * c;
            const double oh = carbonate.k("OH-") / h;
            const ValueArray r = carbonate.maker(array({h, c}));
            ASSERT_EQ(r.size(), 2u);
            EXPECT_NEAR(r[0], c + hco3 + co2 - totalC, 1e-12 * (c + hco3 + co2 + totalC));
            EXPECT_NEAR(r[1], h - oh - 2 * c - hco3, 1e-12 * (h + oh + 2 * c + hco3));  // charge balance last
        }
    }
}

// The residual skips zero coefficients and keeps what it computed from unchanged unknowns; both
// must give exactly the bits of the plain formula, in the order of calls of a Jacobian estimate.
TEST(ChargeBalanceEquationMaker, ResidualsAreBitIdenticalToThePlainFormula) {
    ValueArray totals(brineBasis.size());
    for (std::size_t j = 2; j < totals.size(); ++j) totals[j] = 0.01 * j;
    Equations brine(brineBasis, totals);
    std::mt19937_64 random(6);
    std::uniform_real_distribution<double> exponent(-12.0, 0.5);
    for (int trial = 0; trial < 20; ++trial) {
        ValueArray x(brineBasis.size() - 1);
        for (double& xi : x) xi = std::pow(10.0, exponent(random));
        for (std::size_t column = 0; column <= x.size(); ++column) {  // the last one is x itself
            ValueArray moved = x;
            if (column < x.size()) moved[column] += trial % 2 ? 1e-15 : 1e-3 * x[column];
            ValueArray r;
            brine.maker.evaluate(moved, r);
            const std::vector<double> expected = plainResiduals(brine.set, totals, moved);
            EXPECT_EQ(std::vector<double>(r.begin(), r.end()), expected) << "column " << column;
        }
    }
}

TEST(ChargeBalanceEquationMaker, ZeroNegativeOrNaNMolalityTurnsEveryResidualIntoNaN) {
    Equations brine(brineBasis, ValueArray(brineBasis.size()));
    for (double bad : {0.0, -1e-3, std::nan("")}) {
        for (std::size_t i = 0; i + 1 < brineBasis.size(); ++i) {
            ValueArray x(brineBasis.size() - 1);
            for (double& xi : x) xi = 1e-3;
            x[i] = bad;
            for (double r : brine.maker(x)) EXPECT_TRUE(std::isnan(r)) << "x[" << i << "] = " << bad;
        }
    }
}
