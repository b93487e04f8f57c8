#include "engine/ProcessedInput.h"

#include "database/SpeciesModel.h"
#include "engine/SaltDensityCalculator.h"

#include <cstdint>
#include <functional>
#include <stdexcept>

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

constexpr std::size_t kNoElement = static_cast<std::size_t>(-1);

/// Buffers of one thread, reused from analysis to analysis so that normalisation allocates only
/// what the ProcessedInput keeps.
struct Scratch {
    std::vector<const std::string*> gasBasis;       ///< per gas, its basis species
    std::vector<const std::string*> sharedBasis;    ///< distinct basis species of the gases
    std::vector<std::size_t> carryingElement;       ///< per shared basis, the last element with it
    std::vector<std::size_t> gasShare;              ///< per gas, its index in sharedBasis
    std::vector<std::uint32_t> slots;               ///< open-addressing table of basis positions + 1
};

Scratch& scratch() {
    thread_local Scratch buffers;
    return buffers;
}

/// Position of `name` among the distinct gas basis species, added when new. The gases of the
/// element table are few, so the list stays a handful of names however long the analysis is.
std::size_t shareOf(const std::string& name, Scratch& s) {
    for (std::size_t d = 0; d < s.sharedBasis.size(); ++d) {
        if (*s.sharedBasis[d] == name) return d;
    }
    s.sharedBasis.push_back(&name);
    s.carryingElement.push_back(kNoElement);
    return s.sharedBasis.size() - 1;
}

/// Looks up the basis species of every gas, in list order, and which distinct one it is.
void resolveGases(const std::vector<NameValue>& gases, const ElementTable& table, Scratch& s) {
    for (const NameValue& gas : gases) {
        const std::string& basis = gasBasisSpecies(gas.name, table);
        s.gasBasis.push_back(&basis);
        s.gasShare.push_back(shareOf(basis, s));
    }
}

/// Marks, for each basis species shared by an element and a gas, the last element that carries
/// it: the gas amount joins that element's total instead of becoming a basis of its own. The
/// lookups fail in the order of an element-by-gas comparison: the first element, then every
/// gas, then the other elements, whose basis species are looked up even without gases. Returns
/// how many basis species are shared.
std::size_t mergeGasesIntoElements(const Input& input, const ElementTable& table, Scratch& s) {
    const std::vector<NameValue>& elements = input.elements.values;
    if (elements.empty()) return 0;
    const std::string& firstBasis = table.basisSpecies(elements[0].name);
    resolveGases(input.gases.values, table, s);
    std::size_t shared = 0;
    for (std::size_t i = 0; i < elements.size(); ++i) {
        const std::string& basis = i == 0 ? firstBasis : table.basisSpecies(elements[i].name);
        for (std::size_t d = 0; d < s.sharedBasis.size(); ++d) {
            if (*s.sharedBasis[d] != basis) continue;
            if (s.carryingElement[d] == kNoElement) ++shared;
            s.carryingElement[d] = i;
        }
    }
    return shared;
}

/// The first name already listed throws; one pass through an open-addressing table of positions.
void refuseRepeatedBasis(const std::vector<std::string>& basisNames, std::vector<std::uint32_t>& slots) {
    std::size_t capacity = 16;
    while (capacity < 2 * basisNames.size()) capacity *= 2;
    slots.assign(capacity, 0);
    const std::hash<std::string> hash;
    for (std::size_t k = 0; k < basisNames.size(); ++k) {
        std::size_t slot = hash(basisNames[k]) & (capacity - 1);
        while (slots[slot] != 0) {
            if (basisNames[slots[slot] - 1] == basisNames[k]) throw std::logic_error("A repeated basis found.");
            slot = (slot + 1) & (capacity - 1);
        }
        slots[slot] = static_cast<std::uint32_t>(k + 1);
    }
}

/// The sum the conversion of `unit` divides by: S, the raw values in the list's unit, for mg/L
/// and mg/kg; W, the kg of solute per litre, for mmol/L (every element's molar mass is looked up,
/// so an unknown element fails here). Summed in list order, once for all elements.
double conversionSum(const ConcentsWithUnit& elements, const ElementTable& table) {
    double sum = 0.0;
    if (elements.unit == MmolPerL) {
        for (const NameValue& e : elements.values) sum += table.molarMass(e.name) * e.value * perMillion;
    } else if (elements.unit == MgPerL || elements.unit == MgPerKg) {
        for (const NameValue& e : elements.values) sum += e.value;
    }
    return sum;
}

}  // namespace

double toMolality(const ConcentsWithUnit& elements, std::size_t index, double densityGPerCm3,
                  const ElementTable& table) {
    const double molarMass = table.molarMass(elements.values[index].name);
    return toMolality(elements, index, densityGPerCm3, molarMass, conversionSum(elements, table));
}

double toMolality(const ConcentsWithUnit& elements, std::size_t index, double densityGPerCm3, double molarMass,
                  double sum) {
    const double c = elements.values[index].value;
    switch (elements.unit) {
    case MolPerKgw:
        return c;
    case MmolPerKgw:
        return c / perMille;
    case MmolPerL:
        return c / ((densityGPerCm3 - sum) * perMille);
    case MgPerL:
        return (c / (molarMass * perMille)) / (densityGPerCm3 - sum * perMillion);
    case MgPerKg:
        return c / ((1.0 - sum * perMillion) * (molarMass * perMille));
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
    Scratch& s = scratch();
    s.gasBasis.clear(), s.sharedBasis.clear(), s.carryingElement.clear(), s.gasShare.clear();
    const std::size_t shared = mergeGasesIntoElements(in, table, s);
    const std::vector<NameValue>& elements = in.elements.values;
    const std::vector<NameValue>& gases = in.gases.values;

    // A gas given twice beside its element is merged twice but subtracted once here, which
    // leaves one total more than basis names; that last total is never written or read.
    const std::size_t count = gases.size() + elements.size() + 2 - shared;
    std::vector<std::string>& names = processed.basisNames;
    ValueArray& totals = processed.totals;
    names.reserve(count);
    totals.resize(count);

    names.push_back("H2O");
    totals[0] = perMille / table.molecularWeight("H2O");  // mol of water per kg of water
    names.push_back("H+");
    totals[1] = 0.0;
    double sum = 0.0;  // S or W of the conversion, the same for every element
    for (std::size_t i = 0; i < elements.size(); ++i) {
        names.push_back(table.basisSpecies(elements[i].name));
        const double molarMass = table.molarMass(elements[i].name);  // g/mol of the reported ion
        if (i == 0) sum = conversionSum(in.elements, table);
        totals[2 + i] = toMolality(in.elements, i, in.density, molarMass, sum);
    }
    if (elements.empty()) resolveGases(gases, table, s);
    for (std::size_t j = 0; j < gases.size(); ++j) {
        const std::size_t element = s.carryingElement[s.gasShare[j]];
        if (element != kNoElement) {
            totals[element + 2] += gases[j].value;
        } else {
            totals[names.size()] = gases[j].value;
            names.push_back(*s.gasBasis[j]);
        }
    }
    refuseRepeatedBasis(names, s.slots);
    return processed;
}

}  // namespace Brinecast
}  // namespace korvane
