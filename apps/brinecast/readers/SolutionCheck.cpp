#include "brinecast/readers/SolutionCheck.h"

#include "brinecast/readers/InputError.h"
#include "brinecast/reports/NumberText.h"
#include "brinecast/readers/UnitNames.h"

#include "database/ElementTable.h"
#include "engine/AnalysisLimits.h"

#include <array>
#include <cmath>

namespace korvane::Brinecast::cli {
namespace {

// A brine lies between fresh water and a saturated salt solution; the same range the reader
// accepts for a given density.
constexpr double kLowestDensityGcm3 = 0.5;
constexpr double kHighestDensityGcm3 = 2.0;
/// The reference engine's brine density correlation is fitted to this NaCl molality, mol/kgw.
constexpr double kEngineFittedSaltMolality = 5.7;

const ElementTable& elementTable() {
    static const ElementTable table;
    return table;
}

/// The masses the library subtracts from the solution: S, the amounts' sum in the unit, and
/// W, the solids' mass in kg per litre for mmol/L.
struct Solids {
    double sum = 0.0;
    double massKgPerL = 0.0;
};

Solids solids(const Analysis& a) {
    Solids s;
    for (const NameValue& e : a.elements) {
        s.sum += e.value;
        s.massKgPerL += elementTable().molarMass(e.name) * e.value * 1e-6;
    }
    if (a.unit == MgPerL || a.unit == MgPerKg) s.massKgPerL = s.sum * 1e-6;
    return s;
}

[[noreturn]] void refuse(const Analysis& a, const std::string& problem) {
    throw InputError(a.source + ": " + problem);
}

/// Solids per litre must leave room for the water that dissolves them.
void requireLighterThan(const Analysis& a, double densityGcm3, const std::string& whose) {
    if (!UnitNames::isPerLitre(a.unit)) return;
    const Solids s = solids(a);
    if (s.massKgPerL < densityGcm3) return;
    const double grams = s.massKgPerL * 1000.0;
    refuse(a, "the dissolved solids weigh " +
                  (std::isfinite(grams) ? NumberText::significant(grams, 6) : "more than 1.8e+308") +
                  " g per litre, not less than the " + NumberText::significant(densityGcm3 * 1000.0, 6) +
                  " g a litre of " + whose + " weighs: no water is left to dissolve them; check "
                  "the amounts and their unit (" + UnitNames::concentrationName(a.unit) + ")");
}

void requireDissolvedLimit(const Analysis& a, double densityGcm3) {
    const double m = SolutionCheck::dissolvedMolality(a, densityGcm3);
    if (m <= limits::kMaxDissolvedMolality) return;
    refuse(a, "the dissolved elements and gases add up to " + NumberText::significant(m, 4) +
                  " mol/kgw, more than the " + NumberText::exact(limits::kMaxDissolvedMolality) +
                  " mol/kgw accepted (a brine saturated with NaCl holds about 12); check the "
                  "amounts and their unit (" + UnitNames::concentrationName(a.unit) + ")");
}

}  // namespace

double SolutionCheck::dissolvedMolality(const Analysis& a, double densityGcm3) {
    const Solids s = solids(a);
    double total = 0.0;
    for (const NameValue& e : a.elements) {
        const double perGram = e.value / (elementTable().molarMass(e.name) * 1000.0);
        switch (a.unit) {
            case MolPerKgw: total += e.value; break;
            case MmolPerKgw: total += e.value / 1000.0; break;
            case MmolPerL: total += e.value / ((densityGcm3 - s.massKgPerL) * 1000.0); break;
            case MgPerL: total += perGram / (densityGcm3 - s.sum * 1e-6); break;
            case MgPerKg: total += perGram / (1.0 - s.sum * 1e-6); break;
            default: return NAN;
        }
    }
    for (const NameValue& g : a.gases) total += g.value;
    return total;
}

void SolutionCheck::requireAmounts(const Analysis& a) {
    for (const NameValue& e : a.elements) {
        if (!(std::isfinite(e.value) && e.value >= 0.0)) {
            refuse(a, "the amount of " + e.name + " is " + NumberText::exact(e.value) +
                          "; amounts are finite and zero or more");
        }
    }
    if (a.unit == MgPerKg) {
        const double sum = solids(a).sum;
        if (!(sum < 1e6)) {
            refuse(a, "the dissolved amounts add up to " + NumberText::significant(sum, 6) +
                          " mg/kg, not less than the 1000000 mg/kg of the whole solution; check "
                          "the amounts and their unit");
        }
    }
    if (UnitNames::isPerLitre(a.unit) && a.densityGcm3 <= 0.0) {
        requireLighterThan(a, kHighestDensityGcm3, "the densest brine");
        return;  // the molality waits for the density
    }
    requireSolution(a, a.densityGcm3 > 0.0 ? a.densityGcm3 : 1.0, false);
}

void SolutionCheck::requireSolution(const Analysis& a, double densityGcm3, bool computed) {
    if (!(densityGcm3 >= kLowestDensityGcm3 && densityGcm3 <= kHighestDensityGcm3)) {
        refuse(a, std::string(computed ? "the engine computed" : "the analysis gives") +
                      " a density of " + NumberText::exact(densityGcm3) + " g/cm3, which no "
                      "brine has (0.5 to 2 g/cm3); check the amounts and their unit, or give the "
                      "measured density");
    }
    requireLighterThan(a, densityGcm3, computed ? "the brine, as the engine computed it," : "the brine");
    requireDissolvedLimit(a, densityGcm3);
}

double SolutionCheck::boilingPressurePa(double temperatureK) {
    // IAPWS-IF97 saturation-pressure equation (Region 4, equation 30), coefficients n1 .. n10.
    static constexpr std::array<double, 10> n{
        0.11670521452767e4,  -0.72421316703206e6, -0.17073846940092e2, 0.12020824702470e5,
        -0.32325550322333e7, 0.14915108613530e2,  -0.48232657361591e4, 0.40511340542057e6,
        -0.23855557567849,   0.65017534844798e3};
    const double theta = temperatureK + n[8] / (temperatureK - n[9]);
    const double a = theta * theta + n[0] * theta + n[1];
    const double b = n[2] * theta * theta + n[3] * theta + n[4];
    const double c = n[5] * theta * theta + n[6] * theta + n[7];
    const double ratio = 2.0 * c / (-b + std::sqrt(b * b - 4.0 * a * c));
    return ratio * ratio * ratio * ratio * 1e6;
}

std::vector<std::string> SolutionCheck::warnings(const Analysis& a, bool densityComputed,
                                                 double densityGcm3) {
    std::vector<std::string> out;
    const double boilingPa = boilingPressurePa(a.temperatureK);
    if (a.pressurePa < boilingPa) {
        const std::string boilingBar = NumberText::significant(boilingPa / 1e5, 4) + " bar";
        out.push_back("At " + NumberText::fixed(a.temperatureK - 273.15, 1) + " \xC2\xB0" "C water is "
                      "liquid only at " + boilingBar + " (its boiling pressure) or more; the " +
                      NumberText::significant(a.pressurePa / 1e5, 4) + " bar given is below, so "
                      "the models take the liquid at " + boilingBar + ".");
    }
    // The engine reads the brine as NaCl: half the dissolved elements is its salt molality.
    const double saltMolality = 0.5 * dissolvedMolality(a, densityGcm3);
    if (densityComputed && saltMolality > kEngineFittedSaltMolality) {
        out.push_back("The engine's brine density is fitted up to " +
                      NumberText::exact(kEngineFittedSaltMolality) + " mol/kgw of NaCl; this "
                      "brine holds about " + NumberText::significant(saltMolality, 3) +
                      " mol/kgw of salt, so its density is extrapolated. Give the measured "
                      "density if there is one.");
    }
    return out;
}

}  // namespace korvane::Brinecast::cli
