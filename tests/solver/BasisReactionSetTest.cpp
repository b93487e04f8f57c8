#include "solver/BasisReactionSet.h"

#include "database/EquilibriumConstants.h"
#include "database/SpeciesModel.h"

#include <korvane/KorvaneError.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

using korvane::KorvaneError;
using korvane::Brinecast::BasisReactionSet;
using korvane::Brinecast::ReactionRecord;
using korvane::Brinecast::SpeciesModel;
using Names = std::vector<std::string>;

namespace {

const SpeciesModel& embeddedModel() {
    static const SpeciesModel model;
    return model;
}

std::size_t indexOf(const BasisReactionSet& set, const std::string& species) {
    const Names& names = set.speciesNames();
    for (std::size_t k = 0; k < names.size(); ++k) {
        if (names[k] == species) return k;
    }
    ADD_FAILURE() << species << " was not picked";
    return 0;
}

const Names carbonateBasis{"H2O", "H+", "CO3-2"};

}  // namespace

TEST(BasisReactionSet, PicksMastersAndSpeciesFormedFromTheBasisOnlyInModelOrder) {
    struct Case {
        Names basis;
        Names expected;
    };
    const Case cases[] = {
        {{"H2O", "H+"}, {"H+", "H2O", "OH-"}},
        {carbonateBasis, {"H+", "H2O", "CO3-2", "OH-", "CO2", "HCO3-"}},
        // Basis order does not matter; the records keep the model's order.
        {{"H2O", "H+", "Cl-", "Na+"}, {"H+", "H2O", "Na+", "Cl-", "OH-"}},
        {{"H2O", "H+", "Zn+2", "Cl-"},
         {"H+", "H2O", "Cl-", "Zn+2", "OH-", "ZnOH+", "Zn(OH)2", "Zn(OH)3-", "Zn(OH)4-2", "ZnCl+", "ZnCl2", "ZnCl3-",
          "ZnCl4-2", "ZnOHCl"}},
    };
    for (const Case& c : cases) {
        const BasisReactionSet set(embeddedModel().reactions, c.basis, 298.15);
        EXPECT_EQ(set.speciesNames(), c.expected);
        ASSERT_EQ(set.records().size(), c.expected.size());
        for (std::size_t k = 0; k < c.expected.size(); ++k) EXPECT_EQ(set.records()[k].name, c.expected[k]);
        EXPECT_EQ(set.basisCount(), c.basis.size());
    }
}

TEST(BasisReactionSet, SpeciesNeedingAComponentOutsideTheBasisAreLeftOut) {
    const BasisReactionSet set(embeddedModel().reactions, carbonateBasis, 298.15);
    for (const char* absent : {"CaCO3", "NaHCO3", "Ca+2", "e-"}) {
        for (const std::string& name : set.speciesNames()) EXPECT_NE(name, absent);
    }
}

TEST(BasisReactionSet, BasisNameWithoutMasterRecordIsRefused) {
    for (const Names& basis : {Names{"H2O", "H+", "CO3-2", "Xx+"}, Names{"H2O", "H+", "HCO3-"}, Names{"OH-", "H+"}}) {
        try {
            BasisReactionSet set(embeddedModel().reactions, basis, 298.15);
            ADD_FAILURE() << "basis of " << basis.size() << " names starting " << basis.front() << " was accepted";
        } catch (const KorvaneError& e) {
            EXPECT_STREQ(e.what(), "There are more/less basis info reactions than basis components.");
        }
    }
}

TEST(BasisReactionSet, CoefficientsExpressEachSpeciesInTheBasis) {
    const BasisReactionSet set(embeddedModel().reactions, carbonateBasis, 298.15);
    struct Row {
        const char* species;
        std::vector<double> coefficients;  // H2O, H+, CO3-2
        int charge;
    };
    const Row rows[] = {
        {"H+", {0, 1, 0}, 1},      {"H2O", {1, 0, 0}, 0},     {"CO3-2", {0, 0, 1}, -2},
        {"OH-", {1, -1, 0}, -1},   {"CO2", {-1, 2, 1}, 0},    {"HCO3-", {0, 1, 1}, -1},
    };
    for (const Row& row : rows) {
        const std::size_t k = indexOf(set, row.species);
        for (std::size_t j = 0; j < 3; ++j) {
            EXPECT_EQ(set.coefficient(j, k), row.coefficients[j]) << row.species << " on " << carbonateBasis[j];
            EXPECT_EQ(set.coefficientsOf(k)[j], row.coefficients[j]);
        }
        EXPECT_EQ(set.charges()[k], row.charge) << row.species;
    }
    EXPECT_EQ(set.coefficients().size(), 6u * 3u);
}

TEST(BasisReactionSet, LogKIsPerFormulaUnitOfTheFormedSpecies) {
    // The same reaction written both ways, and once for two formula units of the product.
    const SpeciesModel model(R"([
        {"stoich": {"H+": 1}}, {"stoich": {"H2O": 1}}, {"stoich": {"CO3-2": 1}},
        {"stoich": {"H+": -1, "CO3-2": -1, "HCO3-": 1}, "log_k": 10.329},
        {"stoich": {"H+": 1, "CO3-2": 1, "HCO3-": -1}, "log_k": -10.329},
        {"stoich": {"H+": -2, "CO3-2": -2, "HCO3-": 2}, "log_k": 20.658}
    ])");
    const BasisReactionSet set(model.reactions, carbonateBasis, 298.15);
    ASSERT_EQ(set.speciesCount(), 6u);
    for (std::size_t k = 3; k < 6; ++k) {
        EXPECT_EQ(set.speciesNames()[k], "HCO3-");
        EXPECT_EQ(set.coefficient(0, k), 0.0);
        EXPECT_EQ(set.coefficient(1, k), 1.0);
        EXPECT_EQ(set.coefficient(2, k), 1.0);
        EXPECT_DOUBLE_EQ(set.logKValues()[k], 10.329);
    }
    for (std::size_t k = 0; k < 3; ++k) EXPECT_EQ(set.logKValues()[k], 0.0);
}

TEST(BasisReactionSet, LogKValuesFollowTheTemperature) {
    for (double temperatureK : {273.15, 298.15, 373.15, 473.15}) {
        const BasisReactionSet set(embeddedModel().reactions, carbonateBasis, temperatureK);
        EXPECT_EQ(set.temperature(), temperatureK);
        for (std::size_t k = 0; k < set.speciesCount(); ++k) {
            const ReactionRecord& record = set.records()[k];
            EXPECT_EQ(set.logKValues()[k], korvane::Brinecast::logKAt(record, temperatureK) / record.data.stoich.at(record.name));
        }
    }
}

TEST(BasisReactionSet, RecheckAcceptsTheBasisOfConstructionAndRefusesAShorterOne) {
    BasisReactionSet set(embeddedModel().reactions, carbonateBasis, 298.15);
    EXPECT_NO_THROW(set.recheckSuitability(carbonateBasis));
    try {
        set.recheckSuitability({"H2O", "H+"});
        FAIL() << "a basis without CO3-2 passed the re-check";
    } catch (const std::logic_error& e) {
        EXPECT_STREQ(e.what(), "Base components are not suitable.");
    }
}
