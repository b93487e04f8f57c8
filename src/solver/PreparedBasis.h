#pragma once

#include "solver/SpeciationSystem.h"

#include <cstdint>
#include <limits>
#include <vector>

namespace korvane {
namespace Brinecast {

/// The reactions one list of basis species picks, with everything that depends on that list
/// alone: species, charges and coefficients. Only the log K values follow the temperature; they
/// are filled in for one temperature at a time and kept until another is asked for.
struct PreparedBasis {
    SpeciationSystem system;             ///< log K for `temperatureK`; empty until one is set
    std::vector<std::uint32_t> records;  ///< reaction record of each species
    std::vector<double> ownCoefficients; ///< each species' coefficient in its own reaction
    /// K of the log K values held; NaN, which equals nothing, before the first.
    double temperatureK = std::numeric_limits<double>::quiet_NaN();
};

}  // namespace Brinecast
}  // namespace korvane
