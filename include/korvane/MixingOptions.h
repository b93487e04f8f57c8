#pragma once
/// How two waters are mixed: in proportions of volume or of mass, and at which conditions.

#include <cstdint>

namespace korvane {
namespace Brinecast {

/// What the mixing fraction of the second water measures.
enum class MixingBasis : std::int32_t {
    /// Volume of solution, as fields state a mix ("20 % seawater"); each water's density turns
    /// its volume into kg of water and solutes.
    Volume = 0,
    /// Mass of solution.
    Mass = 1,
};

/// The proportions and conditions of a mix of two waters.
struct MixingOptions {
    MixingBasis basis = MixingBasis::Volume;
    /// K; <= 0: the mean of the two waters' temperatures weighted by their mass of solution.
    double temperature = 0.0;
    /// Pa; <= 0: the first water's pressure.
    double pressure = 0.0;
};

}  // namespace Brinecast
}  // namespace korvane
