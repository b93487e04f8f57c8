#include "SharedSpeciator.h"
#include "RandomBrines.h"
#include "activity/pitzer/PitzerReference.h"

#include <korvane/Speciator.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iostream>
#include <map>
#include <stdexcept>
#include <string>

using namespace korvane::Brinecast;
using brinecast_test::PitzerReferenceBrine;

namespace {

using brinecast_test::speciator;

SolveOptions pitzer(bool macInnes) {
    SolveOptions options;
    options.activity = ActivityModel::Pitzer;
    options.macInnes = macInnes;
    options.tolerance = 1e-12;
    return options;
}

/// Worst differences from the reference over the set, per quantity.
struct Worst {
    double pH = 0, logGamma = 0, molality = 0, si = 0, ionicStrength = 0, logWater = 0;
};

void compare(const PitzerReferenceBrine& brine, const Result& result, Worst& worst) {
    const auto& entries = result.output.species.values;
    for (const auto& expected : brine.logGammas) {
        if (expected.first == "H+") continue;  // through pH
        const auto it = std::find_if(entries.begin(), entries.end(),
                                     [&](const NameValue& e) { return e.name == expected.first; });
        if (expected.first == "OH-") continue;  // in no component's group, as in `run`
        ASSERT_NE(it, entries.end()) << brine.name << " lacks " << expected.first;
        const std::size_t k = static_cast<std::size_t>(it - entries.begin());
        worst.logGamma = std::max(worst.logGamma, std::fabs(result.logActivityCoefficients[k] - expected.second));
        const double m = brine.molalities.at(expected.first);
        worst.molality = std::max(worst.molality, std::fabs(it->value - m) / m);
    }
    worst.pH = std::max(worst.pH, std::fabs(result.output.pH - brine.pH));
    worst.ionicStrength = std::max(worst.ionicStrength, std::fabs(result.ionicStrength / brine.ionicStrength - 1.0));
    worst.logWater = std::max(worst.logWater, std::fabs(result.logWaterActivity - brine.logWaterActivity));
    ASSERT_EQ(result.minerals.size(), brine.saturationIndices.size()) << brine.name;
    for (const MineralSaturation& mineral : result.minerals)
        worst.si = std::max(worst.si, std::fabs(mineral.saturationIndex - brine.saturationIndices.at(mineral.name)));
}

/// Alkalinity (eq/mol) of the Pitzer species that carry any, as PHREEQC counts it: the sum of
/// their master species' (CO3-2 2, H+ −1), so CO2 counts 0.
const std::map<std::string, double> kSpeciesAlkalinity = {{"H+", -1.0},   {"OH-", 1.0},   {"HCO3-", 1.0}, {"CO3-2", 2.0},
                                                          {"MgCO3", 2.0}, {"MgOH+", 1.0}, {"HSO4-", -1.0}};

double carbonOf(const Input& input) {
    for (const NameValue& element : input.elements.values) {
        if (element.name == "C") return element.value;
    }
    return 0.0;
}

/// Largest relative difference of the molalities (mol/kgw) of two results of one analysis.
double worstMolality(const Result& result, const Result& reference) {
    const auto& a = result.output.species.values;
    const auto& b = reference.output.species.values;
    if (a.size() != b.size()) return INFINITY;
    double worst = 0.0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (a[i].name != b[i].name) return INFINITY;
        worst = std::max(worst, std::fabs(a[i].value - b[i].value) / b[i].value);
    }
    return worst;
}

/// The random brines up to 6 mol/kgw and 200 °C with what Pitzer has no parameters for taken out.
std::vector<Input> pitzerRandomBrines() {
    std::vector<Input> brines;
    for (Input input : brinecast_test::randomBrines(300, 5)) {
        auto& elements = input.elements.values;
        auto& gases = input.gases.values;
        const auto has = [](const std::vector<NameValue>& list, const char* name) {
            return std::any_of(list.begin(), list.end(), [&](const NameValue& e) { return e.name == name && e.value > 0; });
        };
        const bool ironWithCarbon = has(elements, "Fe(+2)") && (has(elements, "C") || has(gases, "CO2"));
        gases.erase(std::remove_if(gases.begin(), gases.end(), [](const NameValue& g) { return g.name == "H2S"; }),
                    gases.end());
        elements.erase(std::remove_if(elements.begin(), elements.end(),
                                      [&](const NameValue& e) {
                                          return e.name == "Zn" || e.name == "S(-2)" || (ironWithCarbon && e.name == "Fe(+2)");
                                      }),
                       elements.end());
        if (!elements.empty()) brines.push_back(std::move(input));
    }
    return brines;
}

}  // namespace

// PHREEQC converges the same equations to 1e-14, which leaves its numbers some 1e-9 from the exact
// solution; 1e-6 in pH, log γ and SI is far above that and far below any model change.
TEST(PitzerSpeciation, ReproducesTheReferenceSetInBothConventions) {
    for (bool macInnes : {true, false}) {
        Worst worst;
        for (const PitzerReferenceBrine& brine : brinecast_test::loadPitzerReference(BRINECAST_PITZER_REFERENCE, macInnes)) {
            if (!brine.supported) continue;
            const Result result = speciator().speciate(brine.input, pitzer(macInnes));
            ASSERT_TRUE(result.diagnostics.converged) << brine.name;
            compare(brine, result, worst);
        }
        std::cout << "[ worst    ] macInnes=" << macInnes << " pH " << worst.pH << ", log gamma " << worst.logGamma
                  << ", molality (relative) " << worst.molality << ", SI " << worst.si << ", I (relative) "
                  << worst.ionicStrength << ", log aw " << worst.logWater << "\n";
        EXPECT_LE(worst.pH, 1e-6);
        EXPECT_LE(worst.logGamma, 1e-6);
        EXPECT_LE(worst.molality, 1e-6);
        EXPECT_LE(worst.si, 1e-6);
        EXPECT_LE(worst.ionicStrength, 1e-6);
        EXPECT_LE(worst.logWater, 1e-6);
    }
}

TEST(PitzerSpeciation, ComponentsWithoutParametersAreRefusedByName) {
    int refused = 0;
    for (const PitzerReferenceBrine& brine : brinecast_test::loadPitzerReference(BRINECAST_PITZER_REFERENCE, true)) {
        if (brine.supported) continue;
        try {
            speciator().speciate(brine.input, pitzer(true));
            ADD_FAILURE() << brine.name << " was accepted";
        } catch (const std::invalid_argument& e) {
            for (const std::string& element : brine.unsupported) EXPECT_NE(std::string(e.what()).find(element), std::string::npos) << e.what();
            ++refused;
        }
    }
    EXPECT_EQ(refused, 2);
}

// Random brines up to 6 mol/kgw and 200 °C, half of them far from charge balance (pH then set by
// OH- or H+ alone): every one converges, closes its balances, and the single-ion convention
// moves neither a molality nor a saturation index, since the MacInnes shift cancels in every
// neutral combination.
TEST(PitzerSpeciation, RandomBrinesCloseTheirBalancesInEitherConvention) {
    std::size_t solved = 0;
    for (const Input& input : pitzerRandomBrines()) {
        const Result on = speciator().speciate(input, pitzer(true));
        const Result off = speciator().speciate(input, pitzer(false));
        for (const Result* result : {&on, &off}) {
            ASSERT_TRUE(result->diagnostics.converged) << solved;
            EXPECT_LE(result->diagnostics.massBalanceError, 1e-12);
            EXPECT_LE(result->diagnostics.chargeImbalance, 1e-12);
        }
        ASSERT_EQ(on.output.species.values.size(), off.output.species.values.size());
        for (std::size_t k = 0; k < on.output.species.values.size(); ++k) {
            const double m = on.output.species.values[k].value;
            EXPECT_NEAR(off.output.species.values[k].value, m, 1e-8 * m + 1e-300) << on.output.species.values[k].name;
        }
        ASSERT_EQ(on.minerals.size(), off.minerals.size());
        for (std::size_t k = 0; k < on.minerals.size(); ++k)
            EXPECT_NEAR(on.minerals[k].saturationIndex, off.minerals[k].saturationIndex, 1e-8) << on.minerals[k].name;
        ++solved;
    }
    EXPECT_GT(solved, 200u);
}

// The alkalinity of a result is PHREEQC's, summed over its species; held at the pH a speciation
// reports, the same molalities come back, and with its alkalinity too, its carbon total. The held
// path closes other equations to the same 1e-12, so both agree to 1e-9 relative.
TEST(PitzerSpeciation, OwnPHAndAlkalinityGiveBackTheSpeciation) {
    constexpr double kRelative = 1e-9;
    double worst = 0.0, worstCarbon = 0.0;
    for (bool macInnes : {true, false}) {
        for (const PitzerReferenceBrine& brine : brinecast_test::loadPitzerReference(BRINECAST_PITZER_REFERENCE, macInnes)) {
            if (!brine.supported) continue;
            SCOPED_TRACE(brine.name + (macInnes ? " MacInnes" : ""));
            const Result balanced = speciator().speciate(brine.input, pitzer(macInnes));
            ASSERT_TRUE(balanced.diagnostics.converged);
            double expected = 0.0, scale = 0.0;  // eq/kgw
            for (const auto& species : kSpeciesAlkalinity) {
                const auto found = brine.molalities.find(species.first);
                if (found == brine.molalities.end()) continue;
                expected += species.second * found->second;
                scale += std::fabs(species.second) * found->second;
            }
            EXPECT_NEAR(balanced.alkalinity, expected, 1e-6 * scale);  // PHREEQC's molalities carry 1e-9

            Constraints measured;
            measured.pH = balanced.output.pH;
            const Result fixed = speciator().speciate(brine.input, measured, pitzer(macInnes));
            ASSERT_TRUE(fixed.diagnostics.converged);
            EXPECT_EQ(fixed.output.pH, balanced.output.pH);
            EXPECT_TRUE(fixed.constraints.pHFixed);
            EXPECT_LE(worstMolality(fixed, balanced), kRelative);
            EXPECT_LE(fixed.diagnostics.chargeImbalance, kRelative);
            worst = std::max(worst, worstMolality(fixed, balanced));

            const double carbon = carbonOf(brine.input);  // mol/kgw
            if (carbon == 0.0) continue;
            measured.alkalinity = balanced.alkalinity;
            const Result titrated = speciator().speciate(brine.input, measured, pitzer(macInnes));
            ASSERT_TRUE(titrated.diagnostics.converged);
            EXPECT_TRUE(titrated.constraints.alkalinityImposed);
            EXPECT_LE(std::fabs(titrated.constraints.derivedCarbon / carbon - 1.0), kRelative);
            EXPECT_LE(worstMolality(titrated, balanced), kRelative);
            worstCarbon = std::max(worstCarbon, std::fabs(titrated.constraints.derivedCarbon / carbon - 1.0));
        }
    }
    std::cout << "[ worst    ] molality (relative) " << worst << ", carbon (relative) " << worstCarbon << "\n";
}

// Random brines converge at their own pH, OH- brines of pH 12 and more included, and at their own
// pH and alkalinity from pH 3.5 to 11 (below it carbon is CO2, which alkalinity does not see); at one pH unit lower, chloride closes the charge balance or is
// refused by name when the excess it would have to take up is of its own sign.
TEST(PitzerSpeciation, RandomBrinesConvergeOnTheirOwnPHAndAlkalinity) {
    std::size_t titrated = 0, closed = 0;
    for (const Input& input : pitzerRandomBrines()) {
        const Result own = speciator().speciate(input, pitzer(true));
        Constraints held;
        held.pH = own.output.pH;
        if (*held.pH >= 0.0 && *held.pH <= 14.0) {
            EXPECT_TRUE(speciator().speciate(input, held, pitzer(true)).diagnostics.converged) << own.output.pH;
        }
        const auto& elements = input.elements.values;
        const auto has = [&elements](const char* name) {
            return std::any_of(elements.begin(), elements.end(), [&](const NameValue& e) { return e.name == name && e.value > 0; });
        };
        // An alkalinity brings carbon, which Pitzer cannot describe beside Fe(+2).
        if (!(own.output.pH >= 3.5 && own.output.pH <= 11.0) || has("Fe(+2)")) continue;
        Constraints measured;
        measured.pH = own.output.pH;
        measured.alkalinity = own.alkalinity;
        EXPECT_TRUE(speciator().speciate(input, measured, pitzer(true)).diagnostics.converged) << titrated;
        ++titrated;
        if (!has("Cl")) continue;
        Constraints shifted;
        shifted.pH = own.output.pH - 1.0;
        shifted.balanceWith = "Cl";
        try {
            const Result result = speciator().speciate(input, shifted, pitzer(true));
            EXPECT_TRUE(result.diagnostics.converged) << closed;
            EXPECT_LE(result.diagnostics.chargeImbalance, 1e-11);
            ++closed;
        } catch (const std::invalid_argument& e) {
            EXPECT_NE(std::string(e.what()).find("with \"Cl\" would need a negative amount"), std::string::npos) << e.what();
        }
    }
    EXPECT_GT(titrated, 120u);
    EXPECT_GT(closed, 80u);
    std::cout << "[ counts   ] " << titrated << " titrated, " << closed << " closed with Cl\n";
}
