#include "solver/BasisReactionSet.h"

#include "database/SpeciesModel.h"

#include <korvane/KorvaneError.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

using namespace korvane::Brinecast;
using Names = std::vector<std::string>;

namespace {
const SpeciesModel& embeddedModel() {
    static const SpeciesModel model;
    return model;
}
const Names carbonateBasis{"H2O", "H+", "CO3-2"};
}  // namespace

TEST(BasisReactionSet, PicksMastersAndSpeciesFormedFromTheBasisInModelOrder) {
    const std::pair<Names, Names> cases[] = {  // basis, picked species
        {{"H2O", "H+"}, {"H+", "H2O", "OH-"}},
        {carbonateBasis, {"H+", "H2O", "CO3-2", "OH-", "CO2", "HCO3-"}},  // no CaCO3 without Ca+2
        {{"H2O", "H+", "Cl-", "Na+"}, {"H+", "H2O", "Na+", "Cl-", "OH-"}},
        {{"H2O", "H+", "Zn+2", "Cl-"}, {"H+", "H2O", "Cl-", "Zn+2", "OH-", "ZnOH+", "Zn(OH)2", "Zn(OH)3-", "Zn(OH)4-2",
                                        "ZnCl+", "ZnCl2", "ZnCl3-", "ZnCl4-2", "ZnOHCl"}},
    };
    for (const auto& [basis, expected] : cases) {
        const BasisReactionSet set(embeddedModel().reactions, basis, 298.15);
        EXPECT_EQ(set.speciesNames(), expected);
        for (std::size_t k = 0; k < set.speciesCount(); ++k) EXPECT_EQ(set.records()[k].name, expected[k]);
    }
}

TEST(BasisReactionSet, BasisNameWithoutMasterRecordIsRefused) {
    for (const Names& basis : {Names{"H2O", "H+", "CO3-2", "Xx+"}, Names{"H2O", "H+", "HCO3-"}}) {
        try {
            BasisReactionSet(embeddedModel().reactions, basis, 298.15);
            ADD_FAILURE() << basis.back() << " accepted";
        } catch (const korvane::KorvaneError& e) {
            EXPECT_STREQ(e.what(), "There are more/less basis info reactions than basis components.");
        }
    }
}

TEST(BasisReactionSet, LogKIsPerFormulaUnitOfTheFormedSpecies) {
    // One reaction written forwards, backwards and for two formula units of HCO3-.
    const SpeciesModel model(R"([{"stoich": {"H+": 1}}, {"stoich": {"H2O": 1}}, {"stoich": {"CO3-2": 1}},
        {"stoich": {"H+": -1, "CO3-2": -1, "HCO3-": 1}, "log_k": 10.329},
        {"stoich": {"H+": 1, "CO3-2": 1, "HCO3-": -1}, "log_k": -10.329},
        {"stoich": {"H+": -2, "CO3-2": -2, "HCO3-": 2}, "log_k": 20.658}])");
    const BasisReactionSet set(model.reactions, carbonateBasis, 298.15);
    ASSERT_EQ(set.speciesCount(), 6u);
    for (std::size_t k = 3; k < 6; ++k) {
        EXPECT_EQ(set.speciesNames()[k], "HCO3-");
        EXPECT_EQ(std::vector<double>(set.coefficientsOf(k), set.coefficientsOf(k) + 3), (std::vector<double>{0, 1, 1}));
        EXPECT_DOUBLE_EQ(set.logKValues()[k], 10.329);
    }
}

TEST(BasisReactionSet, RecheckRefusesABasisThatNoLongerFitsTheRecords) {
    BasisReactionSet set(embeddedModel().reactions, carbonateBasis, 298.15);
    EXPECT_NO_THROW(set.recheckSuitability(carbonateBasis));
    try {
        set.recheckSuitability({"H2O", "H+"});
        FAIL() << "a basis without CO3-2 passed";
    } catch (const std::logic_error& e) {
        EXPECT_STREQ(e.what(), "Base components are not suitable.");
    }
}
