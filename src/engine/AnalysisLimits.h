#pragma once
/// The conditions and amounts inside which an analysis is a solution our data can describe. The
/// library refuses what lies outside them before solving; the command line refuses the same with
/// its own messages. One place for the numbers, so the two never disagree.

namespace korvane {
namespace Brinecast {
namespace limits {

/// Temperature range covered by the reaction data and the reference sets, K (0 to 200 °C).
constexpr double kMinTemperatureK = 273.15;
constexpr double kMaxTemperatureK = 473.15;

/// Highest pressure accepted, Pa (1000 atm). Below water's boiling pressure the models take the
/// liquid at its boiling pressure, so low pressures above 100 °C stay accepted.
constexpr double kMaxPressurePa = 1000.0 * 101325.0;

/// Most dissolved matter accepted, as the sum of the element totals in mol/kgw. Halite
/// saturation at 6.1-6.5 mol/kgw of NaCl is 12-13 mol/kgw of elements and a saturated CaCl2 brine
/// about 22; beyond 30 no model of ours has a meaning.
constexpr double kMaxDissolvedMolality = 30.0;

}  // namespace limits
}  // namespace Brinecast
}  // namespace korvane
