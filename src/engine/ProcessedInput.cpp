#include "engine/ProcessedInput.h"

#include "database/SpeciesModel.h"
#include "engine/SaltDensityCalculator.h"

#include <stdexcept>
#include <unordered_map>
#include <unordered_set>

namespace korvane {
namespace Brinecast {

namespace {

constexpr double defaultTemperatureK = 298.15;
constexpr double defaultPressurePa = 101325.0;
constexpr double perMille = 1000.0;
constexpr double perMillion = 1e-6;

void validate(const Input& input) {
    if (input.dllPath.empty()) throw KorvaneError("Korvane dll path is not set.");
    if (!input.elements.values.empty() && input.elements.unit == Undefined)
        throw KorvaneError("Input element concentration unit is not set.");
    if (!input.gases.values.empty() && input.gases.unit != MolPerKgw)
        throw KorvaneError("Input gas concentration unit must be mol/kgw.");
}

/// A missing density (<= 0) is only needed for per-litre units; the per-kg units take 1.0.
void settleDensity(Input& input, const SpeciesModel& model) {
    if (!(input.density <= 0.0) || input.elements.values.empty()) return;
    const ConcentUnit unit = input.elements.unit;
    if (unit == MolPerKgw || unit == MmolPerKgw || unit == MgPerKg) {
        input.density = 1.0;
        return;
    }
    SaltDensityCalculator calculator(input, model);
    input.density = calculator.density();
}

const std::string& gasBasisSpecies(const std::string& gas, const ElementTable& table) {
    return table.basisSpecies(table.gasElement(gas));
}

/// Basis species shared by an element and a gas, mapped to the (last) element that carries it:
/// the gas amount joins that element's total instead of becoming a basis of its own.
std::unordered_map<std::string, std::size_t> gasMergeMap(const Input& input, const ElementTable& table) {
    std::unordered_map<std::string, std::size_t> merged;
    const std::vector<NameValue>& elements = input.elements.values;
    for (std::size_t i = 0; i < elements.size(); ++i) {
        const std::string& elementBasis = table.basisSpecies(elements[i].name);
        for (const NameValue& gas : input.gases.values) {
            if (elementBasis == gasBasisSpecies(gas.name, table)) merged[elementBasis] = i;
        }
    }
    return merged;
}

void refuseRepeatedBasis(const std::vector<std::string>& basisNames) {
    std::unordered_set<std::string> seen;
    for (const std::string& name : basisNames) {
        if (!seen.insert(name).second) throw std::logic_error("A repeated basis found.");
    }
}

}  // namespace

double toMolality(const ConcentsWithUnit& elements, std::size_t index, double densityGPerCm3,
                  const ElementTable& table) {
    const std::vector<NameValue>& values = elements.values;
    const double c = values[index].value;
    const double molarMass = table.molarMass(values[index].name);  // g/mol of the reported ion
    switch (elements.unit) {
    case MolPerKgw:
        return c;
    case MmolPerKgw:
        return c / perMille;
    case MmolPerL: {
        double dissolvedMass = 0.0;  // kg of solute per litre
        for (const NameValue& e : values) dissolvedMass += table.molarMass(e.name) * e.value * perMillion;
        return c / ((densityGPerCm3 - dissolvedMass) * perMille);
    }
    case MgPerL: {
        double sum = 0.0;  // mg/L
        for (const NameValue& e : values) sum += e.value;
        return (c / (molarMass * perMille)) / (densityGPerCm3 - sum * perMillion);
    }
    case MgPerKg: {
        double sum = 0.0;  // mg/kg of solution
        for (const NameValue& e : values) sum += e.value;
        return c / ((1.0 - sum * perMillion) * (molarMass * perMille));
    }
    default:
        throw std::logic_error("Concentration unit not found.");
    }
}

ProcessedInput processInput(const Input& input, const SpeciesModel& model) {
    ProcessedInput processed{input, ValueArray(), {}, model};
    Input& in = processed.input;
    validate(in);
    if (in.temperature <= 0.0) in.temperature = defaultTemperatureK;
    if (in.pressure <= 0.0) in.pressure = defaultPressurePa;
    settleDensity(in, model);

    const ElementTable& table = model.elementTable();
    const std::unordered_map<std::string, std::size_t> merged = gasMergeMap(in, table);
    const std::vector<NameValue>& elements = in.elements.values;
    const std::vector<NameValue>& gases = in.gases.values;

    // A gas given twice beside its element is merged twice but subtracted once here, which
    // leaves one total more than basis names; that last total is never written or read.
    const std::size_t count = gases.size() + elements.size() + 2 - merged.size();
    std::vector<std::string>& names = processed.basisNames;
    ValueArray& totals = processed.totals;
    names.reserve(count);
    totals.resize(count);

    names.push_back("H2O");
    totals[0] = perMille / table.molecularWeight("H2O");  // mol of water per kg of water
    names.push_back("H+");
    totals[1] = 0.0;
    for (std::size_t i = 0; i < elements.size(); ++i) {
        names.push_back(table.basisSpecies(elements[i].name));
        totals[2 + i] = toMolality(in.elements, i, in.density, table);
    }
    for (const NameValue& gas : gases) {
        const std::string& basis = gasBasisSpecies(gas.name, table);
        auto element = merged.find(basis);
        if (element != merged.end()) {
            totals[element->second + 2] += gas.value;
        } else {
            totals[names.size()] = gas.value;
            names.push_back(basis);
        }
    }
    refuseRepeatedBasis(names);
    return processed;
}

}  // namespace Brinecast
}  // namespace korvane
