#include "SharedSpeciator.h"
#include "BrineCatalog.h"
#include "database/ElementTable.h"
#include "minerals/MineralSet.h"
#include "scale/FormulaMass.h"
#include "scale/PrecipitationSearch.h"

#include <korvane/Speciator.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>
#include <vector>

namespace bc = korvane::Brinecast;
using brinecast_test::molal;

namespace {

using brinecast_test::speciator;

const bc::ElementTable& table() {
    static const bc::ElementTable shared;
    return shared;
}

const bc::Mineral& mineral(const std::string& name) {
    for (const bc::Mineral& m : bc::MineralSet::embedded().minerals()) {
        if (m.name == name) return m;
    }
    throw std::out_of_range(name);
}

bc::SolveOptions withActivity(bc::ActivityModel activity) {
    bc::SolveOptions options;
    options.activity = activity;
    return options;
}

double saturationIndex(const bc::Result& result, const std::string& name) {
    for (const auto& s : result.minerals) {
        if (s.name == name) return s.saturationIndex;
    }
    return NAN;
}

struct ScalingBrine {
    const char* label;
    bc::Input input;
    std::vector<const char*> supersaturated;  ///< minerals the brine must be able to deposit
};

/// Oilfield-like brines each oversaturated in a different kind of scale: sulfates (one of them
/// hydrated), carbonates at a pH set by the charge balance, and a sulfide whose deposition
/// releases H+; one brine carries its carbon as dissolved CO2 only.
std::vector<ScalingBrine> scalingBrines() {
    return {
        {"barite and celestite",
         molal({{"Na", 1.0}, {"Cl", 1.0}, {"Ba", 1e-3}, {"Sr", 5e-3}, {"S(6)", 6e-3}}),
         {"Barite", "Celestite"}},
        {"gypsum at 25 degC", molal({{"Ca", 0.04}, {"S(6)", 0.04}, {"Na", 0.1}, {"Cl", 0.1}}), {"Gypsum"}},
        {"calcite and siderite at 80 degC",
         molal({{"Na", 0.5}, {"Cl", 0.5}, {"Ca", 0.02}, {"Fe(+2)", 1e-3}, {"C", 0.02}}, 353.15),
         {"Calcite", "Siderite"}},
        {"calcite whose carbon is a dissolved gas alone",
         molal({{"Na", 0.1}, {"Cl", 0.06}, {"Ca", 0.02}}, 298.15, {{"CO2", 0.05}}), {"Calcite"}},
        {"mackinawite from a sour water",
         molal({{"Na", 0.2}, {"Cl", 0.2}, {"Fe(+2)", 2e-3}, {"S(-2)", 3e-3}}, 323.15), {"Mackinawite"}},
    };
}

bc::PrecipitationSearch searchOf(const bc::Input& brine, const bc::SolveOptions& options) {
    return bc::PrecipitationSearch(
        speciator().molal(brine), [options](const bc::Input& in) { return speciator().speciate(in, options); },
        bc::MineralSet::embedded(), table());
}

}  // namespace

TEST(PrecipitationSearch, RemovingThePotentialLeavesTheMineralSaturated) {
    for (bc::ActivityModel activity : {bc::ActivityModel::Ideal, bc::ActivityModel::Davies, bc::ActivityModel::DebyeHuckel}) {
        const bc::SolveOptions options = withActivity(activity);
        for (const ScalingBrine& brine : scalingBrines()) {
            SCOPED_TRACE(std::string(brine.label) + ", activity model " + std::to_string(static_cast<int>(activity)));
            const bc::PrecipitationSearch search = searchOf(brine.input, options);
            const auto potentials = speciator().precipitationPotential(brine.input, options);
            for (const char* name : brine.supersaturated) {
                const auto p = std::find_if(potentials.begin(), potentials.end(),
                                            [name](const bc::PrecipitationPotential& q) { return q.name == name; });
                ASSERT_NE(p, potentials.end()) << name;
                ASSERT_GT(p->saturationIndex, 0.0) << name;
                EXPECT_TRUE(p->converged) << name;
                EXPECT_GT(p->molPerKgw, 0.0) << name;
                // The search's own tolerance is 1e-10; 1e-8 leaves room for the solver's.
                const bc::Result after = speciator().speciate(search.without(mineral(name), p->molPerKgw), options);
                EXPECT_NEAR(saturationIndex(after, name), 0.0, 1e-8) << name;
            }
        }
    }
}

TEST(PrecipitationSearch, MineralsAtOrBelowSaturationDepositNothing) {
    const bc::Input brine = molal({{"Na", 1.0}, {"Cl", 1.0}, {"Ca", 1e-3}, {"S(6)", 1e-3}});
    const auto potentials = speciator().precipitationPotential(brine, withActivity(bc::ActivityModel::DebyeHuckel));
    ASSERT_EQ(potentials.size(), 3u);  // anhydrite, gypsum, halite
    for (const auto& p : potentials) {
        EXPECT_LT(p.saturationIndex, 0.0) << p.name;
        EXPECT_EQ(p.molPerKgw, 0.0) << p.name;
        EXPECT_EQ(p.mgPerL, 0.0) << p.name;
        EXPECT_TRUE(p.converged) << p.name;
    }
}

TEST(PrecipitationSearch, GypsumTakesItsWaterOfCrystallisation) {
    const bc::Input brine = molal({{"Ca", 0.04}, {"S(6)", 0.04}, {"Na", 0.1}, {"Cl", 0.1}});
    const double amount = 0.01;  // mol/kgw
    const bc::Input after = searchOf(brine, {}).without(mineral("Gypsum"), amount);
    const double waterLeft = 1.0 - 2.0 * amount * 18.01528 / 1000.0;  // kg per kg of the water before
    EXPECT_DOUBLE_EQ(after.elements.values[0].value, (0.04 - amount) / waterLeft);  // Ca
    EXPECT_DOUBLE_EQ(after.elements.values[2].value, 0.1 / waterLeft);              // Na, concentrated only
    const bc::Input anhydrite = searchOf(brine, {}).without(mineral("Anhydrite"), amount);
    EXPECT_DOUBLE_EQ(anhydrite.elements.values[2].value, 0.1);
}

TEST(PrecipitationSearch, MassPerLitreUsesTheSolidsFormulaAndTheBrinesDensity) {
    // g/mol of the solid from its dissolution: BaSO4, CaSO4·2H2O, FeS (H+ taken back), with the
    // element table's atomic masses (O 16.0, H 1.008).
    const struct {
        const char* mineral;
        double gramsPerMole;
    } solids[] = {{"Barite", 233.404}, {"Gypsum", 172.176}, {"Mackinawite", 87.911}};
    for (const auto& solid : solids) {
        double mass = 0.0;
        for (const auto& term : mineral(solid.mineral).terms) {
            const std::string species = term.species == bc::Mineral::kHydrogen ? "H+"
                                        : term.species == bc::Mineral::kWater
                                            ? "H2O"
                                            : bc::MineralSet::embedded().speciesName(term.species);
            mass += term.coefficient * bc::formulaMass(species, table());
        }
        EXPECT_NEAR(mass, solid.gramsPerMole, 1e-9) << solid.mineral;
    }
    bc::Input brine = molal({{"Na", 1.0}, {"Cl", 1.0}, {"Ba", 1e-3}, {"S(6)", 1e-3}});
    brine.density = 1.04;  // g/cm3
    const auto potentials = speciator().precipitationPotential(brine, {});
    const double kgWaterPerLitre = 1.04 / (1.0 + (22.9898 + 35.453 + 1e-3 * (137.34 + 96.064)) / 1000.0);
    EXPECT_NEAR(potentials.front().mgPerL, potentials.front().molPerKgw * 233.404 * 1000.0 * kgWaterPerLitre, 1e-9);
    EXPECT_THROW(bc::formulaMass("Xy2", table()), std::invalid_argument);
}
