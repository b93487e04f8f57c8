#include <korvane/PitzerCoverage.h>

#include "activity/pitzer/PitzerDatabase.h"
#include "database/ElementTable.h"
#include "interface/PitzerGaps.h"
#include "minerals/MineralSet.h"

#include <algorithm>

namespace korvane {
namespace Brinecast {

namespace {

/// The basis species carrying `name` (an element, or a gas when `gas`); empty for an unknown name.
std::string basisOf(const std::string& name, bool gas, const ElementTable& table) {
    std::string element = name;
    if (gas) {
        const auto& gases = table.gases();
        const auto it = std::find_if(gases.begin(), gases.end(), [&name](const auto& pair) { return pair.first == name; });
        if (it == gases.end()) return {};
        element = it->second;
    }
    for (const ElementTable::Element& entry : table.elements()) {
        if (entry.name == element) return entry.basisSpecies;
    }
    return {};
}

/// The basis species of `input` with a positive amount, each once, elements first.
std::vector<std::string> presentBasis(const Input& input, const ElementTable& table) {
    std::vector<std::string> present;
    const auto add = [&](const ConcentsWithUnit& list, bool gas) {
        for (const NameValue& entry : list.values) {
            if (!(entry.value > 0.0)) continue;
            std::string basis = basisOf(entry.name, gas, table);
            if (!basis.empty() && std::find(present.begin(), present.end(), basis) == present.end())
                present.push_back(std::move(basis));
        }
    };
    add(input.elements, false);
    add(input.gases, true);
    return present;
}

bool contains(const std::vector<std::string>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

/// The minerals whose every aqueous species is among `present` and that the Pitzer data lack.
std::vector<std::string> mineralsOutsidePitzer(const std::vector<std::string>& present) {
    const MineralSet& set = MineralSet::embedded();
    const PitzerDatabase& database = PitzerDatabase::embedded();
    std::vector<std::string> missing;
    for (const Mineral& mineral : set.minerals()) {
        const bool listed = std::all_of(mineral.terms.begin(), mineral.terms.end(), [&](const Mineral::Term& term) {
            return term.species < 0 || contains(present, set.speciesName(term.species));
        });
        const bool inPitzer = std::any_of(database.minerals().begin(), database.minerals().end(),
                                          [&mineral](const PitzerMineral& m) { return m.name == mineral.name; });
        if (listed && !inPitzer) missing.push_back(mineral.name);
    }
    return missing;
}

}  // namespace

PitzerCoverage pitzerCoverage(const Input& input) {
    static const ElementTable table;
    const std::vector<std::string> present = presentBasis(input, table);
    PitzerCoverage coverage;
    coverage.missingComponents = pitzerGaps(present, PitzerDatabase::embedded(), table);
    coverage.missingMinerals = mineralsOutsidePitzer(present);
    return coverage;
}

}  // namespace Brinecast
}  // namespace korvane
