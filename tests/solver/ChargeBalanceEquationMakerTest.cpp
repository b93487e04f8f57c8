#include "solver/ChargeBalanceEquationMaker.h"

#include "database/EquilibriumConstants.h"
#include "database/SpeciesModel.h"
#include "solver/BasisReactionSet.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <random>
#include <string>
#include <vector>

using korvane::ValueArray;
using korvane::Brinecast::BasisReactionSet;
using korvane::Brinecast::ChargeBalanceEquationMaker;
using korvane::Brinecast::SpeciesModel;
using Names = std::vector<std::string>;

namespace {

const SpeciesModel& embeddedModel() {
    static const SpeciesModel model;
    return model;
}

ValueArray values(std::initializer_list<double> list) {
    ValueArray a(list.size());
    std::size_t i = 0;
    for (double v : list) a[i++] = v;
    return a;
}

/// log10 K of the record that forms `species`, as the database writes the reaction.
double logKOf(const BasisReactionSet& set, const std::string& species) {
    for (const auto& record : set.records()) {
        if (record.name == species) return korvane::Brinecast::logKAt(record, set.temperature());
    }
    ADD_FAILURE() << species << " is not in the set";
    return 0.0;
}

struct Equations {
    Equations(const Names& basis, const ValueArray& totals, double temperatureK = 298.15)
        : set(embeddedModel().reactions, basis, temperatureK), maker(set, basis, totals, embeddedModel()) {}
    BasisReactionSet set;
    ChargeBalanceEquationMaker maker;
};

const Names brineBasis{"H2O", "H+", "Na+", "Ca+2", "Mg+2", "Fe+2", "Zn+2", "Cl-", "CO3-2", "SO4-2", "HS-"};

}  // namespace

TEST(ChargeBalanceEquationMaker, PureWaterHasOnlyTheChargeBalance) {
    Equations water({"H2O", "H+"}, values({55.508, 0.0}));
    const double kw = std::pow(10.0, logKOf(water.set, "OH-"));
    for (double h : {1e-9, 1e-7, 1e-5}) {
        const ValueArray r = water.maker(values({h}));
        ASSERT_EQ(r.size(), 1u);
        EXPECT_NEAR(r[0], h - kw / h, 1e-12 * (h + kw / h)) << "H+ " << h;
    }
}

TEST(ChargeBalanceEquationMaker, CarbonateResidualsAreMassAndChargeBalanceByMassAction) {
    const double totalC = 0.003;  // mol/kgw
    for (double temperatureK : {298.15, 353.15}) {
        Equations carbonate({"H2O", "H+", "CO3-2"}, values({55.508, 0.0, totalC}), temperatureK);
        const double kw = std::pow(10.0, logKOf(carbonate.set, "OH-"));
        const double k1 = std::pow(10.0, logKOf(carbonate.set, "HCO3-"));  // H+ + CO3-2 = HCO3-
        const double k2 = std::pow(10.0, logKOf(carbonate.set, "CO2"));    // CO3-2 + 2H+ = CO2 + H2O
        for (double h : {1e-10, 1e-8, 1e-6}) {
            const double c = 1e-4;
            const double hco3 = k1 * h * c, co2 = k2 * h * h * c, oh = kw / h;
            const ValueArray r = carbonate.maker(values({h, c}));
            ASSERT_EQ(r.size(), 2u);
            EXPECT_NEAR(r[0], c + hco3 + co2 - totalC, 1e-12 * (c + hco3 + co2 + totalC));
            EXPECT_NEAR(r[1], h - oh - 2 * c - hco3, 1e-12 * (h + oh + 2 * c + hco3));
        }
    }
}

TEST(ChargeBalanceEquationMaker, LastResidualIsAlwaysTheChargeBalance) {
    for (const Names& basis : {Names{"H2O", "H+"}, Names{"H2O", "H+", "Na+"}, Names{"H2O", "H+", "Na+", "Cl-"}, brineBasis}) {
        ValueArray totals(basis.size());
        Equations equations(basis, totals);
        ValueArray x(basis.size() - 1);
        for (std::size_t i = 0; i < x.size(); ++i) x[i] = 1e-3 * (i + 1);
        ValueArray full(basis.size());
        full[0] = equations.maker.waterAmount();
        for (std::size_t i = 0; i < x.size(); ++i) full[i + 1] = x[i];
        const ValueArray r = equations.maker(x);
        ASSERT_EQ(r.size(), x.size());
        EXPECT_EQ(r[r.size() - 1], equations.maker.chargeSum(equations.maker.speciesValues(full)));
    }
}

// The residual skips zero coefficients; that must give exactly the bits of the plain sums.
TEST(ChargeBalanceEquationMaker, ResidualsAreBitIdenticalToThePlainFormula) {
    ValueArray totals(brineBasis.size());
    for (std::size_t j = 2; j < totals.size(); ++j) totals[j] = 0.01 * j;
    Equations brine(brineBasis, totals);
    const BasisReactionSet& set = brine.set;
    const std::size_t n = brineBasis.size(), species = set.speciesCount();
    std::mt19937_64 random(6);
    std::uniform_real_distribution<double> exponent(-12.0, 0.5);
    for (int trial = 0; trial < 50; ++trial) {
        ValueArray x(n - 1);
        for (std::size_t i = 0; i < x.size(); ++i) x[i] = std::pow(10.0, exponent(random));
        std::vector<double> la(n), m(species);
        la[0] = std::log10(1000.0 / 18.01528 * (18.01528 / 1000.0));
        for (std::size_t j = 1; j < n; ++j) la[j] = std::log10(x[j - 1]);
        for (std::size_t k = 0; k < species; ++k) {
            double sum = 0.0;
            for (std::size_t j = 0; j < n; ++j) sum += set.coefficient(j, k) * la[j];
            m[k] = std::pow(10.0, set.logKValues()[k] + sum);
        }
        const ValueArray r = brine.maker(x);
        for (std::size_t j = 2; j < n; ++j) {
            double sum = 0.0;
            for (std::size_t k = 0; k < species; ++k) sum += set.coefficient(j, k) * m[k];
            EXPECT_EQ(r[j - 2], sum - totals[j]) << brineBasis[j];
        }
        double charge = 0.0;
        for (std::size_t k = 0; k < species; ++k) charge += set.charges()[k] * m[k];
        EXPECT_EQ(r[n - 2], charge);
    }
}

TEST(ChargeBalanceEquationMaker, ZeroOrNegativeMolalityTurnsEveryResidualIntoNaN) {
    ValueArray totals(brineBasis.size());
    Equations brine(brineBasis, totals);
    for (double bad : {0.0, -1e-3, std::nan("")}) {
        for (std::size_t zero = 0; zero + 1 < brineBasis.size(); ++zero) {
            ValueArray x(brineBasis.size() - 1);
            for (std::size_t i = 0; i < x.size(); ++i) x[i] = 1e-3;
            x[zero] = bad;
            const ValueArray r = brine.maker(x);
            for (std::size_t i = 0; i < r.size(); ++i) EXPECT_TRUE(std::isnan(r[i])) << "residual " << i << " with x[" << zero << "] = " << bad;
        }
    }
}

TEST(ChargeBalanceEquationMaker, WaterHasUnitActivityAndMastersTheirOwnMolality) {
    Equations carbonate({"H2O", "H+", "CO3-2"}, values({55.508, 0.0, 0.001}));
    const ChargeBalanceEquationMaker& maker = carbonate.maker;
    EXPECT_DOUBLE_EQ(maker.waterAmount(), 1000.0 / 18.01528);
    const ValueArray m = maker.speciesValues(values({maker.waterAmount(), 2e-7, 3e-4}));
    ASSERT_EQ(m.size(), carbonate.set.speciesCount());
    EXPECT_DOUBLE_EQ(m[0], 2e-7);  // H+
    EXPECT_DOUBLE_EQ(m[1], 1.0);   // H2O
    EXPECT_DOUBLE_EQ(m[2], 3e-4);  // CO3-2
    EXPECT_EQ(maker.chargeSum(ValueArray(carbonate.set.speciesCount())), 0.0);
}
