#pragma once

#include <korvane/Brinecast.h>
#include <korvane/MixingOptions.h>

namespace korvane {
namespace Brinecast {

class ElementTable;

/// Mixes of two waters already in mol/kgw (as `molalAnalysis` gives them). Each proportion of
/// solution becomes kg of water through the water's solution mass per kg of water and, by volume,
/// its density; the totals of the mix are the amounts of both per kg of their combined water, as
/// PHREEQC's MIX combines solutions once the proportions are known.
class WaterMixer {
public:
    /// Throws std::invalid_argument when either water is not in mol/kgw with a positive density.
    WaterMixer(Input first, Input second, const MixingOptions& options, const ElementTable& table);

    /// The mix holding `fraction` (0 to 1) of the second water, by volume or mass of solution,
    /// in mol/kgw; 0 gives the first water's totals and 1 the second's, bit for bit. A component
    /// only the water with no share has is left out. Throws std::invalid_argument for a fraction
    /// outside 0 to 1.
    Input mix(double fraction) const;

private:
    /// Shares (0 to 1) of the two waters' kg of water and of their kg of solution in the mix.
    struct Shares {
        double firstWater, secondWater, firstSolution, secondSolution;
    };
    Shares shares(double fraction) const;

    Input first_;
    Input second_;
    MixingOptions options_;
    double firstSolutionPerWater_;   ///< kg of solution per kg of water of the first water
    double secondSolutionPerWater_;  ///< the same of the second
};

}  // namespace Brinecast
}  // namespace korvane
