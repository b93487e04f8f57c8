#include "brinecast/LibraryBasis.h"

#include "database/SpeciesModel.h"
#include "engine/ProcessedInput.h"
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
    b.coefficients = set.coefficients();
    return b;
}

}  // namespace korvane::Brinecast::cli
