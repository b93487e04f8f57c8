#include "scale/PrecipitationSearch.h"

#include "database/ElementTable.h"
#include "minerals/Mineral.h"
#include "minerals/MineralSet.h"
#include "scale/FormulaMass.h"
#include "scale/MolalAnalysis.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <limits>
#include <utility>

namespace korvane {
namespace Brinecast {

namespace {

constexpr double kGramsPerKilogram = 1000.0;
constexpr double kMilligramsPerGram = 1000.0;
/// |SI| the search aims at; the speciation's own tolerance (1e-10 relative) limits it anyway.
constexpr double kTargetIndex = 1e-10;
/// |SI| below which an amount counts as found.
constexpr double kAcceptedIndex = 1e-9;
constexpr int kMostTrials = 200;

/// The gases whose element the list names join that element's total, as the speciation merges
/// them anyway: every component then has one place to be taken from.
Input withGasesInElements(Input molal, const ElementTable& table) {
    std::vector<NameValue> kept;
    for (const NameValue& gas : molal.gases.values) {
        const std::string& element = table.gasElement(gas.name);
        auto carrier = std::find_if(molal.elements.values.begin(), molal.elements.values.end(),
                                    [&element](const NameValue& e) { return e.name == element; });
        if (carrier != molal.elements.values.end()) carrier->value += gas.value;
        else kept.push_back(gas);
    }
    molal.gases.values = std::move(kept);
    return molal;
}

/// g/mol of the solid: its dissolution's products less its reactants, water and H+ included.
double solidMass(const Mineral& mineral, const MineralSet& minerals, const ElementTable& table) {
    double mass = 0.0;
    for (const Mineral::Term& term : mineral.terms) {
        const std::string& species = term.species == Mineral::kHydrogen ? std::string("H+")
                                     : term.species == Mineral::kWater  ? std::string("H2O")
                                                                        : minerals.speciesName(term.species);
        mass += term.coefficient * formulaMass(species, table);
    }
    return mass;
}

}  // namespace

PrecipitationSearch::PrecipitationSearch(const Input& molal, Speciate speciate, const MineralSet& minerals,
                                         const ElementTable& table)
    : molal_(withGasesInElements(molal, table)), speciate_(std::move(speciate)), minerals_(minerals),
      table_(table), litresPerKgWater_(solutionMassPerKgWater(molal, table) / molal.density) {}

bool PrecipitationSearch::component(const std::string& species, std::ptrdiff_t& index) const {
    const auto& elements = molal_.elements.values;
    for (std::size_t i = 0; i < elements.size(); ++i) {
        if (table_.basisSpecies(elements[i].name) != species) continue;
        index = static_cast<std::ptrdiff_t>(i);
        return true;
    }
    const auto& gases = molal_.gases.values;
    for (std::size_t j = 0; j < gases.size(); ++j) {
        if (table_.basisSpecies(table_.gasElement(gases[j].name)) != species) continue;
        index = -1 - static_cast<std::ptrdiff_t>(j);
        return true;
    }
    return false;
}

double PrecipitationSearch::largestAmount(const Mineral& mineral) const {
    double largest = std::numeric_limits<double>::infinity();
    for (const Mineral::Term& term : mineral.terms) {
        if (term.species < 0 || !(term.coefficient > 0.0)) continue;
        std::ptrdiff_t index = 0;
        if (!component(minerals_.speciesName(term.species), index)) return 0.0;
        const NameValue& c = index >= 0 ? molal_.elements.values[static_cast<std::size_t>(index)]
                                        : molal_.gases.values[static_cast<std::size_t>(-1 - index)];
        largest = std::min(largest, c.value / term.coefficient);
    }
    return std::isfinite(largest) ? largest : 0.0;
}

Input PrecipitationSearch::without(const Mineral& mineral, double amount) const {
    Input brine = molal_;
    double waterMoles = 0.0;  // mol of water of crystallisation per mol of mineral
    for (const Mineral::Term& term : mineral.terms) {
        if (term.species == Mineral::kWater) waterMoles += term.coefficient;
        std::ptrdiff_t index = 0;
        // H+ is no component: the charge balance sets it, so an acid-releasing deposit lowers the pH.
        if (term.species < 0 || !component(minerals_.speciesName(term.species), index)) continue;
        NameValue& c = index >= 0 ? brine.elements.values[static_cast<std::size_t>(index)]
                                  : brine.gases.values[static_cast<std::size_t>(-1 - index)];
        c.value = std::max(0.0, c.value - term.coefficient * amount);
    }
    const double waterLeft = 1.0 - waterMoles * amount * table_.molecularWeight("H2O") / kGramsPerKilogram;  // kg
    if (waterLeft == 1.0) return brine;
    for (NameValue& e : brine.elements.values) e.value /= waterLeft;
    for (NameValue& g : brine.gases.values) g.value /= waterLeft;
    return brine;
}

double PrecipitationSearch::saturationAfter(const Mineral& mineral, double amount, bool& converged) const {
    const Result result = speciate_(without(mineral, amount));
    converged = converged && result.diagnostics.converged;
    for (const MineralSaturation& s : result.minerals) {
        if (s.name == mineral.name) return s.saturationIndex;
    }
    return -std::numeric_limits<double>::infinity();
}

PrecipitationPotential PrecipitationSearch::of(const Mineral& mineral, double saturationIndex) const {
    PrecipitationPotential potential{mineral.name, saturationIndex, 0.0, 0.0, true};
    if (!(saturationIndex > 0.0)) return potential;
    // SI falls as x grows and reaches -inf where a component is used up: a bracket from the start.
    double low = 0.0, high = largestAmount(mineral);
    double atLow = saturationIndex, atHigh = -std::numeric_limits<double>::infinity();
    double amount = 0.0, index = saturationIndex;
    bool converged = high > 0.0;
    int lastSide = 0;
    for (int trial = 0; converged && trial < kMostTrials && high - low > 4e-16 * high; ++trial) {
        // Regula falsi once both ends are finite, halving a stuck end's value (Illinois); bisection otherwise.
        double x = std::isfinite(atHigh) ? low + atLow * (high - low) / (atLow - atHigh) : 0.5 * (low + high);
        if (!(x > low && x < high)) x = 0.5 * (low + high);
        try {
            index = saturationAfter(mineral, x, converged);
        } catch (const std::exception&) {
            converged = false;
            break;
        }
        amount = x;
        if (std::fabs(index) <= kTargetIndex) break;
        if (index > 0.0) {
            low = x, atLow = index;
            if (lastSide == 1) atHigh *= 0.5;
            lastSide = 1;
        } else {
            high = x, atHigh = index;
            if (lastSide == -1) atLow *= 0.5;
            lastSide = -1;
        }
    }
    potential.converged = converged && std::fabs(index) <= kAcceptedIndex;
    potential.molPerKgw = amount;
    potential.mgPerL = amount * solidMass(mineral, minerals_, table_) * kMilligramsPerGram / litresPerKgWater_;
    return potential;
}

}  // namespace Brinecast
}  // namespace korvane
