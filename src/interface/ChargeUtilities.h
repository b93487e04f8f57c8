#pragma once

#include <korvane/Brinecast.h>

#include <string>

namespace korvane {
namespace Brinecast {

class ElementTable;

/// `getMolarCharge` against an element table the caller keeps: the exported function builds a
/// species model per call, which a program that sums the charge of every row cannot afford.
double molarCharge(const ConcentsWithUnit& elements, const ElementTable& table);

/// `getIonAmountToBalanceCharge` against an element table the caller keeps.
double ionAmountToBalanceCharge(const std::string& element, ConcentUnit unit, double charge,
                                const ElementTable& table);

}  // namespace Brinecast
}  // namespace korvane
