#pragma once

#include <string>

namespace korvane {
namespace Brinecast {

class ElementTable;

/// Molar mass (g/mol) of a chemical formula or species name ("CO3-2", "HS-", "H2O"), from the
/// atomic masses of the element table; a trailing charge is ignored. Throws std::invalid_argument
/// naming the formula when it holds a symbol the table does not know.
double formulaMass(const std::string& formula, const ElementTable& table);

}  // namespace Brinecast
}  // namespace korvane
