#include "interface/PitzerGaps.h"

#include "activity/pitzer/PitzerDatabase.h"
#include "database/ElementTable.h"

#include <algorithm>
#include <cstdint>

namespace korvane {
namespace Brinecast {

namespace {

/// The element an analysis names for basis species `basis` ("Zn+2" -> "Zn").
std::string elementOf(const std::string& basis, const ElementTable& table) {
    for (const ElementTable::Element& element : table.elements()) {
        if (element.basisSpecies == basis) return element.name;
    }
    return basis;
}

bool has(const std::vector<std::string>& names, const char* name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

}  // namespace

std::vector<std::string> pitzerGaps(const std::vector<std::string>& presentBasis, const PitzerDatabase& database,
                                    const ElementTable& table) {
    std::vector<std::string> gaps;
    for (const std::string& basis : presentBasis) {
        const std::int32_t master = database.find(basis);
        // H+ is the solvent's own ion there, never an analysed component.
        if (master < 0 || !database.species()[static_cast<std::size_t>(master)].master || basis == "H+")
            gaps.push_back(elementOf(basis, table));
    }
    // The iron(II) parameters pair it with Cl-, Br- and SO4-2 only.
    const bool carbon = has(presentBasis, "CO3-2");
    if (has(presentBasis, "Fe+2") && (carbon || has(presentBasis, "HS-")))
        gaps.push_back(std::string("Fe(+2) together with ") + (carbon ? "C" : "S(-2)"));
    return gaps;
}

}  // namespace Brinecast
}  // namespace korvane
