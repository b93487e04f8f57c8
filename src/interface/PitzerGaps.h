#pragma once

#include <string>
#include <vector>

namespace korvane {
namespace Brinecast {

class ElementTable;
class PitzerDatabase;

/// What the Pitzer data lack among `presentBasis`, the basis species of an analysis with a
/// positive total ("Zn+2", "CO3-2"): each element without a Pitzer master species, named as an
/// analysis names it ("Zn", "S(-2)"), then "Fe(+2) together with C" (or S(-2)) when iron(II)
/// meets a component its parameters do not pair it with. Empty when Pitzer covers the brine.
std::vector<std::string> pitzerGaps(const std::vector<std::string>& presentBasis, const PitzerDatabase& database,
                                    const ElementTable& table);

}  // namespace Brinecast
}  // namespace korvane
