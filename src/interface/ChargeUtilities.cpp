// The exported helpers that prepare an analysis for `run` without solving anything. Each builds
// its own species model for the element table and drops it before returning.
#include "interface/ChargeUtilities.h"

#include <korvane/Brinecast.h>

#include "database/SpeciesModel.h"
#include "interface/ChargeName.h"

#include <cmath>

namespace korvane {
namespace Brinecast {

namespace {

/// A net charge this small against the largest positive contribution is rounding, not charge.
constexpr double kBalancedRelativeCharge = 1e-15;

[[noreturn]] void unitNotDefined() { throw UnreacheableException("Unit is not defined."); }

/// mol/kgw of an element amount. Per-litre and per-kg-of-solution amounts are taken as if per kg
/// of water: these helpers give quick estimates and never need the brine density.
double molality(double value, ConcentUnit unit, const ElementTable& table, const std::string& element) {
    switch (unit) {
    case MolPerKgw: return value;
    case MmolPerKgw:
    case MmolPerL: return value / 1000.0;
    case MgPerL:
    case MgPerKg: return value / (table.molarMass(element) * 1000.0);
    default: unitNotDefined();
    }
}

}  // namespace

double getMolarCharge(const ConcentsWithUnit& elements) {
    const SpeciesModel model;
    return molarCharge(elements, model.elementTable());
}

double molarCharge(const ConcentsWithUnit& elements, const ElementTable& table) {
    double sum = 0.0;      // eq/kgw
    double largest = 0.0;  // eq/kgw, largest positive contribution
    for (const NameValue& entry : elements.values) {
        const std::string& ion = table.ionName(entry.name);
        const double charge = parseCharge(ion) * molality(entry.value, elements.unit, table, entry.name);
        sum += charge;
        if (charge > largest) largest = charge;
    }
    // Without a positive contribution there is nothing to compare with: the sum stands as it is.
    if (largest > 0.0 && std::fabs(sum / largest) < kBalancedRelativeCharge) return 0.0;
    return sum;
}

double getIonAmountToBalanceCharge(std::string element, ConcentUnit unit, double charge) {
    const SpeciesModel model;
    return ionAmountToBalanceCharge(element, unit, charge, model.elementTable());
}

double ionAmountToBalanceCharge(const std::string& element, ConcentUnit unit, double charge,
                                const ElementTable& table) {
    const int ionCharge = parseCharge(table.ionName(element));
    const double amount = -charge / ionCharge;  // mol/kgw; a neutral ion gives inf or NaN
    switch (unit) {
    case MolPerKgw: return amount;
    case MmolPerKgw:
    case MmolPerL: return amount * 1000.0;
    case MgPerL:
    case MgPerKg: return amount * table.molarMass(element) * 1000.0;
    default: unitNotDefined();
    }
}

std::string getLabIonElement(const std::string& ion) {
    const SpeciesModel model;
    return model.elementTable().labIonElement(ion);
}

std::string toCountedChargeName(const std::string& name) {
    const SpeciesModel model;
    return model.elementTable().countedChargeName(name);
}

}  // namespace Brinecast
}  // namespace korvane
