#pragma once
/// A straight path in temperature and pressure, e.g. from the reservoir to the separator.

#include <cstddef>

namespace korvane {
namespace Brinecast {

/// `steps` equally spaced points from (fromTemperature, fromPressure) to (toTemperature,
/// toPressure), both ends included.
struct ProfilePath {
    double fromTemperature = 298.15;  ///< K
    double fromPressure = 101325.0;   ///< Pa
    double toTemperature = 298.15;    ///< K
    double toPressure = 101325.0;     ///< Pa
    std::size_t steps = 2;            ///< at least 2
};

}  // namespace Brinecast
}  // namespace korvane
