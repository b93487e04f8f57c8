#include "brinecast/LibraryBasis.h"

#include "database/SpeciesModel.h"
#include "engine/InputProcessor.h"
#include "solver/BasisReactionSet.h"

namespace korvane::Brinecast::cli {

BasisData LibraryBasis::of(const Input& input) {
    SpeciesModel model;
    const ProcessedInput processed = processInput(input, model);
    const BasisReactionSet set(model.reactions, processed.basisNames, processed.input.temperature);
    BasisData b;
    b.basisNames = processed.basisNames;
    b.totals.assign(processed.totals.begin(), processed.totals.end());
    b.speciesNames = set.speciesNames();
    b.charges.assign(set.charges().begin(), set.charges().end());
    b.logK.assign(set.logKValues().begin(), set.logKValues().end());
    const auto& matrix = set.coefficients();
    b.coefficients.assign(matrix.data(), matrix.data() + b.speciesNames.size() * b.basisNames.size());
    return b;
}

}  // namespace korvane::Brinecast::cli
