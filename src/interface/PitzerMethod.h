#pragma once

#include <korvane/Speciator.h>

#include <string>
#include <vector>

namespace korvane {
namespace Brinecast {

class ConstraintPlan;
struct ProcessedInput;

/// The speciation of a processed analysis under the Pitzer model, with its own species set and
/// minerals, and the measured pH and rows of `plan` in place of balances when there is one.
/// Refuses with std::invalid_argument, naming them, the components the Pitzer parameters do not
/// cover: Zn, S(-2), Fe(+3), and Fe(+2) together with C or S(-2); and what `plan` cannot reach,
/// as the other models refuse it. A component with a zero total is left out of the brine.
Result pitzerResult(const ProcessedInput& processed, const SolveOptions& options, const ConstraintPlan* plan = nullptr);

/// The Pitzer species set of a processed analysis as a result groups it, known before solving.
struct PitzerLayout {
    std::vector<std::string> basisNames;  ///< "H2O", "H+", then the components with a positive total
    std::vector<double> totals;           ///< mol/kgw, aligned with basisNames (water's and H+'s 0)
    std::vector<std::string> speciesNames;
    std::vector<int> charges;
    std::vector<double> logK;             ///< log10 K of formation at T and P' (I = 0)
    std::vector<double> coefficients;     ///< species-major: k·basisNames.size() + j
};

/// The layout of `processed` under Pitzer; refuses what pitzerResult refuses.
PitzerLayout pitzerLayout(const ProcessedInput& processed);

}  // namespace Brinecast
}  // namespace korvane
