#include "brinecast/calculation/DissolvedSolids.h"

#include "brinecast/readers/UnitNames.h"

#include "database/ElementTable.h"

namespace korvane::Brinecast::cli {
namespace {

constexpr double kMgPerKg = 1e6;

const ElementTable& table() {
    static const ElementTable t;
    return t;
}

/// The summed mass of the elements in the analysis' own basis: mg per L, per kg of solution or
/// per kg of water.
double summedMass(const Analysis& a) {
    double mass = 0.0;
    for (const NameValue& e : a.elements) {
        switch (a.unit) {
            case MgPerL:
            case MgPerKg: mass += e.value; break;
            case MmolPerL:
            case MmolPerKgw: mass += e.value * table().molarMass(e.name); break;
            case MolPerKgw: mass += e.value * 1e3 * table().molarMass(e.name); break;
            default: return NAN;
        }
    }
    return mass;
}

}  // namespace

DissolvedSolids DissolvedSolids::of(const Analysis& a, double densityGcm3) {
    const double mass = a.elements.empty() ? 0.0 : summedMass(a);
    const bool densityKnown = densityGcm3 > 0.0;
    DissolvedSolids s;
    if (UnitNames::isPerLitre(a.unit)) {
        s.mgPerL = mass;
        // mg/L over kg/L: mg per kg of solution.
        if (densityKnown) s.mgPerKg = mass / densityGcm3;
    } else if (a.unit == MgPerKg) {
        s.mgPerKg = mass;
    } else {
        // Per kg of water: a kg of water carries mass/1e6 kg of solids.
        s.mgPerKg = mass / (1.0 + mass / kMgPerKg);
    }
    if (densityKnown && std::isnan(s.mgPerL)) s.mgPerL = s.mgPerKg * densityGcm3;
    s.kgWaterPerKg = 1.0 - s.mgPerKg / kMgPerKg;
    if (densityKnown) s.kgWaterPerL = densityGcm3 - s.mgPerL / kMgPerKg;
    return s;
}

double DissolvedSolids::perKgWater(double amount, ConcentUnit unit) const {
    if (UnitNames::isPerLitre(unit)) return amount / kgWaterPerL;
    if (unit == MgPerKg) return amount / kgWaterPerKg;
    return amount;
}

}  // namespace korvane::Brinecast::cli
