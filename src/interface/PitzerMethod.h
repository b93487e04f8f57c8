#pragma once

#include <korvane/Speciator.h>

#include <string>
#include <vector>

namespace korvane {
namespace Brinecast {

struct ProcessedInput;

/// The speciation of a processed analysis under the Pitzer model, with its own species set and
/// minerals. Refuses with std::invalid_argument, naming them, the components the Pitzer
/// parameters do not cover: Zn, S(-2), Fe(+3), and Fe(+2) together with C or S(-2). A component
/// with a zero total is left out of the brine.
Result pitzerResult(const ProcessedInput& processed, const SolveOptions& options);

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
