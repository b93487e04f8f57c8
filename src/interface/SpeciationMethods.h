#pragma once

#include <korvane/Speciator.h>

namespace korvane {
namespace Brinecast {

class ReactionIndex;
class SpeciesModel;

/// One speciation by the method `options` names, against reaction data that is only read, so
/// that any number of threads may share `model` and `index`. Input errors are thrown exactly as
/// `run` throws them.
Result speciateWith(const Input& input, const SpeciesModel& model, const ReactionIndex& index,
                    const SolveOptions& options);
/// The same with `constraints` imposed: the robust solver with the pH held and rows in place of
/// balances, or exactly the call above when the constraints impose nothing.
Result speciateWith(const Input& input, const Constraints& constraints, const SpeciesModel& model,
                    const ReactionIndex& index, const SolveOptions& options);

}  // namespace Brinecast
}  // namespace korvane
