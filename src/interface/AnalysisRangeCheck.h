#pragma once

#include <korvane/Brinecast.h>

namespace korvane {
namespace Brinecast {

class ElementTable;
struct ProcessedInput;

/// Refuses, with std::invalid_argument naming the value and the range accepted, an analysis
/// whose conditions or amounts our data cannot describe, before anything is computed from it:
/// a temperature (K) or pressure (Pa) outside the reaction data's range (0 or less still means
/// "not given": 298.15 K and 101325 Pa), a density (g/cm3) that is not a number, and element or
/// gas amounts that are negative or not finite.
void refuseConditionsOutOfRange(const Input& input);

/// Refuses the same way a normalised analysis that is no solution: dissolved elements as heavy
/// as the solution that holds them (per-litre and per-kg units), or more dissolved matter in
/// mol/kgw than any brine holds.
void refuseAmountsOutOfRange(const ProcessedInput& processed, const ElementTable& table);

}  // namespace Brinecast
}  // namespace korvane
