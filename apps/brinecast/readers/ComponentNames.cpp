#include "brinecast/readers/ComponentNames.h"

#include <korvane/Brinecast.h>

#include <stdexcept>

namespace korvane::Brinecast::cli {
namespace {

// Carbonate is not in the library's ion vocabulary: it reports carbon as bicarbonate.
bool isCarbonate(const std::string& name) { return name == "CO3--" || name == "CO3-2"; }

std::optional<std::string> labIonElement(const std::string& ion) {
    try {
        return getLabIonElement(ion);
    } catch (const std::logic_error&) {
        return std::nullopt;
    }
}

// "H" and "O" stand for water and H+, which every calculation holds already: giving them
// again would repeat a basis component.
bool isSolvent(const ElementTable::Element& e) {
    return e.basisSpecies == "H2O" || e.basisSpecies == "H+";
}

// |charge| of a counted-charge ion name: "Ca+2" 2, "Cl-" 1, "SO4-2" 2.
int chargeOf(const std::string& ion) {
    const auto sign = ion.find_last_of("+-");
    if (sign == std::string::npos) return 0;
    const std::string digits = ion.substr(sign + 1);
    return digits.empty() ? 1 : std::stoi(digits);
}

}  // namespace

std::optional<ComponentNames::Element> ComponentNames::element(const std::string& name) const {
    std::lock_guard<std::mutex> lock(mutex_);
    const auto known = resolved_.find(name);
    if (known != resolved_.end()) return known->second;
    return resolved_[name] = resolve(name);
}

std::optional<ComponentNames::Element> ComponentNames::resolve(const std::string& name) const {
    std::optional<std::string> found;
    if (isCarbonate(name)) return Element{"C", true, 2};
    for (const ElementTable::Element& e : table_.elements()) {
        if (e.name == name) found = name;
    }
    for (const ElementTable::NamePair& spread : table_.spreadChargeNames()) {
        if (!found && spread.first == name) found = labIonElement(toCountedChargeName(name));
    }
    if (!found) found = labIonElement(name);
    if (!found) return std::nullopt;
    for (const ElementTable::Element& e : table_.elements()) {
        if (e.name == *found && isSolvent(e)) return std::nullopt;
    }
    return Element{*found, false, chargeOf(table_.ionName(*found))};
}

bool ComponentNames::isGas(const std::string& name) const {
    for (const ElementTable::NamePair& gas : table_.gases()) {
        if (gas.first == name) return true;
    }
    return false;
}

std::string ComponentNames::elementOfBasis(const std::string& basis) const {
    for (const ElementTable::Element& e : table_.elements()) {
        if (e.basisSpecies == basis) return e.name;
    }
    return basis;
}

double ComponentNames::carbonateToBicarbonateMass() const {
    // Same decimal masses as the library's table: CO3 = HCO3 - H.
    const double bicarbonate = table_.molarMass("C");
    return bicarbonate / (bicarbonate - table_.molarMass("H"));
}

std::string ComponentNames::acceptedElements() const {
    std::string names;
    for (const ElementTable::Element& e : table_.elements()) {
        if (!isSolvent(e)) names += e.name + ", ";
    }
    names += "or a lab ion name: ";
    for (const ElementTable::NamePair& spread : table_.spreadChargeNames()) {
        names += spread.first + ", ";
    }
    return names + "CO3-- (also with counted charges, as Ca+2 or SO4-2)";
}

std::string ComponentNames::acceptedGases() const {
    std::string names;
    for (const ElementTable::NamePair& gas : table_.gases()) {
        names += (names.empty() ? "" : " or ") + gas.first;
    }
    return names;
}

}  // namespace korvane::Brinecast::cli
