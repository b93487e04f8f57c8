#include "database/ElementTable.h"

#include "database/EmbeddedReactionDocuments.h"

#include <stdexcept>

namespace korvane {
namespace Brinecast {

namespace {

// Plain literals only, so the tables are constant-initialised and a model built during another
// file's static initialisation still finds them.
struct ElementLiteral {
    const char* name;
    double elementMolarMass;  // g/mol
    double alkalinity;
    const char* basisSpecies;
    const char* ionName;
    double ionMolarMass;  // g/mol
};
struct NameLiteral {
    const char* first;
    const char* second;
};

// Molar masses are these exact literals, not sums of atomic masses: mg-based analyses are
// converted with them, and both iron valences share 55.847.
constexpr ElementLiteral kElements[] = {
    {"H", 1.008, -1.0, "H+", "H+", 1.008},
    {"O", 16.0, 0.0, "H2O", "O-2", 16.0},
    {"C", 12.0111, 2.0, "CO3-2", "HCO3-", 61.0191},
    {"Ca", 40.08, 0.0, "Ca+2", "Ca+2", 40.08},
    {"Cl", 35.453, 0.0, "Cl-", "Cl-", 35.453},
    {"Na", 22.9898, 0.0, "Na+", "Na+", 22.9898},
    {"S(6)", 32.064, 0.0, "SO4-2", "SO4-2", 96.064},
    {"S(-2)", 32.064, 1.0, "HS-", "HS-", 32.064},
    {"Ba", 137.34, 0.0, "Ba+2", "Ba+2", 137.34},
    {"Mg", 24.312, 0.0, "Mg+2", "Mg+2", 24.312},
    {"Fe(+2)", 55.847, 0.0, "Fe+2", "Fe+2", 55.847},
    {"Fe(+3)", 55.847, -2.0, "Fe+3", "Fe+3", 55.847},
    {"K", 39.102, 0.0, "K+", "K+", 39.102},
    {"Sr", 87.62, 0.0, "Sr+2", "Sr+2", 87.62},
    {"Br", 79.904, 0.0, "Br-", "Br-", 79.904},
    {"Zn", 65.37, 0.0, "Zn+2", "Zn+2", 65.37},
};

constexpr NameLiteral kGases[] = {{"CO2", "C"}, {"H2S", "S(-2)"}};

constexpr std::pair<const char*, double> kMolecularWeights[] = {
    {"H2O", 18.01528}, {"CO2", 44.01}, {"H2S", 34.082}};  // g/mol

constexpr NameLiteral kSpreadChargeNames[] = {
    {"Na+", "Na+"},   {"Ca++", "Ca+2"},  {"Mg++", "Mg+2"},   {"K+", "K+"},
    {"Sr++", "Sr+2"}, {"Ba++", "Ba+2"},  {"Fe++", "Fe+2"},   {"Zn++", "Zn+2"},
    {"Cl-", "Cl-"},   {"SO4--", "SO4-2"}, {"HCO3-", "HCO3-"}, {"Br-", "Br-"},
};

template <typename Map>
const typename Map::mapped_type& find(const Map& map, const std::string& key, const char* missing) {
    const auto found = map.find(key);
    if (found == map.end()) throw std::logic_error(missing);
    return found->second;
}

}  // namespace

ElementTable::ElementTable() {
    for (const ElementLiteral& e : kElements) {
        elements_.push_back({e.name, e.elementMolarMass, e.alkalinity, e.basisSpecies, e.ionName, e.ionMolarMass});
    }
    for (const NameLiteral& gas : kGases) gases_.emplace_back(gas.first, gas.second);
    for (const NameLiteral& pair : kSpreadChargeNames) spreadChargeNames_.emplace_back(pair.first, pair.second);
    for (std::size_t i = 0; i < elements_.size(); ++i) elementIndex_.emplace(elements_[i].name, i);
    gasElements_.insert(gases_.begin(), gases_.end());
    for (const auto& weight : kMolecularWeights) molecularWeights_.emplace(weight.first, weight.second);
    countedChargeNames_.insert(spreadChargeNames_.begin(), spreadChargeNames_.end());
    // Built last, from the element entries: each reported ion leads back to its element.
    for (const Element& entry : elements_) ionElements_.emplace(entry.ionName, entry.name);
    documents_ = embeddedReactionDocuments();
}

const ElementTable::Element& ElementTable::element(const std::string& name) const {
    return elements_[find(elementIndex_, name, "Element name not found.")];
}

const std::string& ElementTable::basisSpecies(const std::string& name) const { return element(name).basisSpecies; }

const std::string& ElementTable::ionName(const std::string& name) const { return element(name).ionName; }

double ElementTable::molarMass(const std::string& name) const { return element(name).ionMolarMass; }

const std::string& ElementTable::gasElement(const std::string& gas) const {
    return find(gasElements_, gas, "Gas name not found!");
}

double ElementTable::molecularWeight(const std::string& species) const {
    return find(molecularWeights_, species, "Molecular Weight not found!");
}

const std::string& ElementTable::labIonElement(const std::string& ion) const {
    return find(ionElements_, ion, "Ion name not found.");
}

const std::string& ElementTable::countedChargeName(const std::string& name) const {
    return find(countedChargeNames_, name, "Spread-Charge ion name not found!");
}

}  // namespace Brinecast
}  // namespace korvane
