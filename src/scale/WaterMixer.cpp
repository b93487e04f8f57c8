#include "scale/WaterMixer.h"

#include "scale/MolalAnalysis.h"

#include <cmath>
#include <stdexcept>
#include <string>
#include <utility>

namespace korvane {
namespace Brinecast {

namespace {

void requireMolal(const Input& water, const char* which) {
    const bool molal = water.elements.values.empty() || water.elements.unit == MolPerKgw;
    if (!molal || !(water.density > 0.0) || !std::isfinite(water.density))
        throw std::invalid_argument(std::string("The ") + which +
                                    " water of a mix must be in mol/kgw with its density (g/cm3) settled; "
                                    "convert it first (Speciator::molal).");
}

const NameValue* find(const std::vector<NameValue>& list, const std::string& name) {
    for (const NameValue& entry : list) {
        if (entry.name == name) return &entry;
    }
    return nullptr;
}

/// The first list's names in order, then the second's new ones, each at share-weighted amount
/// (mol/kgw); a name is kept only from a list whose water has a share.
std::vector<NameValue> combine(const std::vector<NameValue>& first, const std::vector<NameValue>& second,
                               double firstShare, double secondShare) {
    if (!(firstShare > 0.0)) return second;  // all of the second water, in its own order
    std::vector<NameValue> mixed;
    mixed.reserve(first.size() + second.size());
    for (const NameValue& a : first) {
        const NameValue* b = find(second, a.name);
        if (firstShare > 0.0 || b != nullptr)
            mixed.push_back({a.name, firstShare * a.value + secondShare * (b ? b->value : 0.0)});
    }
    if (!(secondShare > 0.0)) return mixed;
    for (const NameValue& b : second) {
        if (find(first, b.name) == nullptr) mixed.push_back({b.name, secondShare * b.value});
    }
    return mixed;
}

}  // namespace

WaterMixer::WaterMixer(Input first, Input second, const MixingOptions& options, const ElementTable& table)
    : first_(std::move(first)), second_(std::move(second)), options_(options) {
    requireMolal(first_, "first");
    requireMolal(second_, "second");
    if (options_.basis != MixingBasis::Volume && options_.basis != MixingBasis::Mass)
        throw std::invalid_argument("Unknown mixing basis " + std::to_string(static_cast<int>(options_.basis)) +
                                    "; use MixingBasis::Volume or MixingBasis::Mass.");
    firstSolutionPerWater_ = solutionMassPerKgWater(first_, table);
    secondSolutionPerWater_ = solutionMassPerKgWater(second_, table);
}

WaterMixer::Shares WaterMixer::shares(double fraction) const {
    // kg of solution of each water in one unit (litre or kg) of mix.
    const bool byVolume = options_.basis == MixingBasis::Volume;
    const double firstSolution = (1.0 - fraction) * (byVolume ? first_.density : 1.0);
    const double secondSolution = fraction * (byVolume ? second_.density : 1.0);
    const double firstWater = firstSolution / firstSolutionPerWater_;    // kg of water
    const double secondWater = secondSolution / secondSolutionPerWater_;  // kg of water
    const double water = firstWater + secondWater;
    const double solution = firstSolution + secondSolution;
    return {firstWater / water, secondWater / water, firstSolution / solution, secondSolution / solution};
}

Input WaterMixer::mix(double fraction) const {
    if (!(fraction >= 0.0 && fraction <= 1.0))
        throw std::invalid_argument("Mixing fraction " + std::to_string(fraction) +
                                    " is outside 0 to 1; give the share of the second water, e.g. 0.25.");
    const Shares s = shares(fraction);
    Input mixed;
    mixed.dllPath = first_.dllPath;
    mixed.elements.assign(combine(first_.elements.values, second_.elements.values, s.firstWater, s.secondWater),
                          MolPerKgw);
    mixed.gases.assign(combine(first_.gases.values, second_.gases.values, s.firstWater, s.secondWater), MolPerKgw);
    mixed.temperature = options_.temperature > 0.0
                            ? options_.temperature
                            : s.firstSolution * first_.temperature + s.secondSolution * second_.temperature;
    mixed.pressure = options_.pressure > 0.0 ? options_.pressure : first_.pressure;
    // Volumes taken as additive: kg of solution over the litres they came from.
    mixed.density = 1.0 / (s.firstSolution / first_.density + s.secondSolution / second_.density);
    return mixed;
}

}  // namespace Brinecast
}  // namespace korvane
