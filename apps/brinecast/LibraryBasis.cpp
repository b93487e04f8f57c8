#include "brinecast/LibraryBasis.h"

#include "database/SpeciesModel.h"
#include "engine/ProcessedInput.h"
#include "solver/BasisPreparationCache.h"
#include "solver/ReactionIndex.h"

#include <cmath>

namespace korvane::Brinecast::cli {
namespace {

/// The reaction data, parsed once for the process and only read after that, so every thread
/// checks against the same model the library calculates with.
struct ReactionData {
    const SpeciesModel model;
    const ReactionIndex index{model.reactions};
};

const ReactionData& reactionData() {
    static const ReactionData data;
    return data;
}

}  // namespace

BasisData LibraryBasis::of(const Input& input) {
    const ReactionData& data = reactionData();
    const ProcessedInput processed = processInput(input, data.model);
    // The index picks the reactions, log K values, charges and coefficients of the basis
    // reaction set, bit for bit; the thread keeps them for the next analysis on the same basis.
    const SpeciationSystem& set = BasisPreparationCache::ofThisThread().system(data.index, processed.basisNames,
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

std::vector<std::string> LibraryBasis::reportedSpecies(const Input& input) {
    // The same threshold as the library's grouping of its output.
    constexpr double kGroupCoefficient = 1e-8;
    const ReactionData& data = reactionData();
    const ProcessedInput processed = processInput(input, data.model);
    const SpeciationSystem& set = BasisPreparationCache::ofThisThread().system(data.index, processed.basisNames,
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
