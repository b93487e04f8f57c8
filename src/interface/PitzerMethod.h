#pragma once

#include <korvane/Speciator.h>

namespace korvane {
namespace Brinecast {

struct ProcessedInput;

/// The speciation of a processed analysis under the Pitzer model, with its own species set and
/// minerals. Refuses with std::invalid_argument, naming them, the components the Pitzer
/// parameters do not cover: Zn, S(-2), Fe(+3), and Fe(+2) together with C or S(-2). A component
/// with a zero total is left out of the brine.
Result pitzerResult(const ProcessedInput& processed, const SolveOptions& options);

}  // namespace Brinecast
}  // namespace korvane
