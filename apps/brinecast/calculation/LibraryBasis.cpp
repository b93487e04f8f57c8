#include "brinecast/calculation/LibraryBasis.h"

#include "brinecast/calculation/SharedReactionData.h"

#include "database/ElementTable.h"
#include "engine/ProcessedInput.h"
#include "interface/PitzerMethod.h"
#include "solver/BasisPreparationCache.h"

#include <cmath>

namespace korvane::Brinecast::cli {
namespace {

BasisData pitzerBasis(const ProcessedInput& processed) {
    PitzerLayout layout = pitzerLayout(processed);
    BasisData b;
    b.basisNames = std::move(layout.basisNames);
    b.totals = std::move(layout.totals);
    b.speciesNames = std::move(layout.speciesNames);
    b.charges = std::move(layout.charges);
    b.logK = std::move(layout.logK);
    b.coefficients = std::move(layout.coefficients);
    return b;
}

}  // namespace

BasisData LibraryBasis::of(const Input& input, ActivityModel activity) {
    const ProcessedInput processed = processInput(input, SharedReactionData::model());
    if (activity == ActivityModel::Pitzer) return pitzerBasis(processed);
    // The index picks the reactions, log K values, charges and coefficients of the basis
    // reaction set, bit for bit; the thread keeps them for the next analysis on the same basis.
    const SpeciationSystem& set = BasisPreparationCache::ofThisThread().system(SharedReactionData::index(), processed.basisNames,
                                                                               processed.input.temperature);
    BasisData b;
    b.basisNames = processed.basisNames;
    b.totals.assign(processed.totals.begin(), processed.totals.end());
    b.speciesNames.reserve(set.speciesCount());
    for (const std::string* name : set.speciesNames) b.speciesNames.push_back(*name);
    b.charges.assign(set.charges.begin(), set.charges.end());
    b.logK = set.logK;
    b.coefficients = set.coefficients;
    return b;
}

BasisData LibraryBasis::of(const Input& input, const ConstraintOutcome& outcome, ActivityModel activity) {
    static const ElementTable table;
    Input withCarbon = input;
    bool hasCarbon = false;
    for (const NameValue& e : input.elements.values) hasCarbon = hasCarbon || e.name == "C";
    for (const NameValue& g : input.gases.values) hasCarbon = hasCarbon || table.gasElement(g.name) == "C";
    // An analysis without carbon gets the carbon of its alkalinity: give the basis its component,
    // whose total is replaced below. The placeholder is too small to move the other totals, which
    // per-litre and per-kg-of-solution units convert through the whole dissolved mass.
    constexpr double kPlaceholderAmount = 1e-12;  // in the analysis' unit
    if (outcome.alkalinityImposed && !hasCarbon) withCarbon.elements.push_back({"C", kPlaceholderAmount});
    BasisData b = of(withCarbon, activity);
    auto setTotal = [&b](const std::string& basis, double total) {
        for (std::size_t j = 0; j < b.basisNames.size(); ++j) {
            if (b.basisNames[j] == basis) b.totals[j] = total;
        }
    };
    if (!outcome.balancedWith.empty()) setTotal(table.basisSpecies(outcome.balancedWith), outcome.balancedTotal);
    if (outcome.alkalinityImposed) setTotal(table.basisSpecies("C"), outcome.derivedCarbon);
    return b;
}

std::vector<std::string> LibraryBasis::reportedSpecies(const Input& input, ActivityModel activity) {
    // The same threshold as the library's grouping of its output.
    constexpr double kGroupCoefficient = 1e-8;
    const ProcessedInput processed = processInput(input, SharedReactionData::model());
    if (activity == ActivityModel::Pitzer) {
        const BasisData b = pitzerBasis(processed);
        std::vector<std::string> names;
        for (std::size_t j = 2; j < b.basisNames.size(); ++j) {
            for (std::size_t k = 0; k < b.speciesNames.size(); ++k) {
                if (std::fabs(b.coefficient(k, j)) > kGroupCoefficient) names.push_back(b.speciesNames[k]);
            }
        }
        return names;
    }
    const SpeciationSystem& set = BasisPreparationCache::ofThisThread().system(SharedReactionData::index(), processed.basisNames,
                                                                               processed.input.temperature);
    std::vector<std::string> names;
    for (std::size_t j = 2; j < set.basisCount; ++j) {
        for (std::size_t k = 0; k < set.speciesCount(); ++k) {
            if (std::fabs(set.coefficient(j, k)) > kGroupCoefficient) names.push_back(*set.speciesNames[k]);
        }
    }
    return names;
}

}  // namespace korvane::Brinecast::cli
