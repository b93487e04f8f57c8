#include "interface/AnalysisRangeCheck.h"

#include "database/ElementTable.h"
#include "engine/AnalysisLimits.h"
#include "engine/ProcessedInput.h"

#include <charconv>
#include <cmath>
#include <stdexcept>
#include <string>

namespace korvane {
namespace Brinecast {

namespace {

constexpr double kPerMillion = 1e-6;  // mg -> kg, and mg/L -> g/cm3

/// Shortest text that reads back as `value`, so a message quotes exactly what was given.
std::string text(double value) {
    char buffer[32];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
    return std::string(buffer, end);
}

std::string unitName(ConcentUnit unit) {
    switch (unit) {
    case MolPerKgw: return "mol/kgw";
    case MmolPerKgw: return "mmol/kgw";
    case MmolPerL: return "mmol/L";
    case MgPerL: return "mg/L";
    case MgPerKg: return "mg/kg";
    default: return "unit " + std::to_string(static_cast<int>(unit));
    }
}

void refuseAmounts(const ConcentsWithUnit& amounts, const char* what) {
    for (const NameValue& entry : amounts.values) {
        if (std::isfinite(entry.value) && entry.value >= 0.0) continue;
        throw std::invalid_argument(std::string(what) + " \"" + entry.name + "\" is given as " + text(entry.value) +
                                    " " + unitName(amounts.unit) +
                                    "; an amount must be a finite number, 0 or more.");
    }
}

/// Mass of the dissolved elements per unit of solution, in the unit of `capacity`: g/cm3 for the
/// per-litre units, kg per kg of solution for mg/kg. Infinite when a mass overflows.
struct DissolvedMass {
    double mass = 0.0;
    double capacity = 0.0;
    const char* unit = "";
};

bool dissolvedMassOf(const ProcessedInput& processed, const ElementTable& table, DissolvedMass& out) {
    const ConcentsWithUnit& elements = processed.input.elements;
    const ConcentUnit unit = elements.unit;
    // Without elements there is no density either (none is computed): nothing to weigh.
    if ((unit != MmolPerL && unit != MgPerL && unit != MgPerKg) || elements.values.empty()) return false;
    for (const NameValue& entry : elements.values) {
        // mmol/L times g/mol is mg/L.
        const double massPerLitre = unit == MmolPerL ? entry.value * table.molarMass(entry.name) : entry.value;
        out.mass += massPerLitre * kPerMillion;
    }
    out.capacity = unit == MgPerKg ? 1.0 : processed.input.density;
    out.unit = unit == MgPerKg ? "kg per kg of solution" : "g/cm3";
    return true;
}

}  // namespace

void refuseConditionsOutOfRange(const Input& input) {
    using namespace limits;
    const double temperatureK = input.temperature;
    if (std::isnan(temperatureK) ||
        (temperatureK > 0.0 && !(temperatureK >= kMinTemperatureK && temperatureK <= kMaxTemperatureK))) {
        throw std::invalid_argument("Temperature " + text(temperatureK) + " K is outside the range of the reaction data, " +
                                    text(kMinTemperatureK) + " to " + text(kMaxTemperatureK) +
                                    " K (0 to 200 degC); give a temperature in that range, or 0 for 298.15 K.");
    }
    const double pressurePa = input.pressure;
    if (std::isnan(pressurePa) || pressurePa > kMaxPressurePa) {
        throw std::invalid_argument("Pressure " + text(pressurePa) + " Pa is outside the accepted range, up to " +
                                    text(kMaxPressurePa) +
                                    " Pa (1000 atm); give a pressure up to that, or 0 for 101325 Pa.");
    }
    if (!std::isfinite(input.density)) {
        throw std::invalid_argument("Density " + text(input.density) +
                                    " g/cm3 is not a finite number; give the brine's density, or 0 to have it "
                                    "computed.");
    }
    refuseAmounts(input.elements, "Element");
    refuseAmounts(input.gases, "Gas");
}

void refuseAmountsOutOfRange(const ProcessedInput& processed, const ElementTable& table) {
    DissolvedMass dissolved;
    if (dissolvedMassOf(processed, table, dissolved) && !(dissolved.mass < dissolved.capacity)) {
        throw std::invalid_argument("The dissolved elements weigh " + text(dissolved.mass) + " " + dissolved.unit +
                                    ", as much as the solution that holds them (" + text(dissolved.capacity) + " " +
                                    dissolved.unit + "); check the amounts and their unit (" +
                                    unitName(processed.input.elements.unit) + ").");
    }
    double dissolvedMolality = 0.0;  // mol/kgw
    for (std::size_t j = 2; j < processed.basisNames.size(); ++j) dissolvedMolality += processed.totals[j];
    if (!(dissolvedMolality <= limits::kMaxDissolvedMolality)) {
        throw std::invalid_argument("The analysis holds " + text(dissolvedMolality) +
                                    " mol/kgw of dissolved elements and gases, beyond the " +
                                    text(limits::kMaxDissolvedMolality) +
                                    " mol/kgw of the most concentrated brine the reaction data describe; check the "
                                    "amounts and their unit.");
    }
}

}  // namespace Brinecast
}  // namespace korvane
