#pragma once

#include <string>

namespace korvane {
namespace Brinecast {

/// The charge written at the end of a species name: "Ca+2" 2, "SO4-2" -2, "Cl-" -1, "H2O" 0.
/// Reads one digit only, and a spread charge ("SO4--") counts as one unit: convert lab names with
/// toCountedChargeName first. Throws std::logic_error for a sign before a non-digit ("Fe+a").
int parseCharge(std::string name);

}  // namespace Brinecast
}  // namespace korvane
