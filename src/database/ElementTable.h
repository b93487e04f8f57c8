#pragma once

#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace korvane {
namespace Brinecast {

/// The fixed vocabulary that joins a brine analysis (elements, gases, laboratory ion names) to the
/// species of the reaction documents, plus the reaction documents themselves. Constant after
/// construction; every lookup is exact and case-sensitive and throws std::logic_error on a miss.
class ElementTable {
public:
    /// One element as an analysis names it ("Ca", "C", "S(6)": sulfur only in a stated valence).
    struct Element {
        std::string name;
        double elementMolarMass;  ///< g/mol of the element itself
        double alkalinity;        ///< alkalinity contribution of the basis species, eq/mol; stored only
        std::string basisSpecies;  ///< the master species that carries the element ("CO3-2" for "C")
        std::string ionName;       ///< the ion the element is reported as ("HCO3-" for "C")
        double ionMolarMass;       ///< g/mol of that ion: the mass a mg-based analysis counts
    };
    using NamePair = std::pair<std::string, std::string>;

    /// Builds the table and takes a copy of the embedded reaction documents.
    ElementTable();

    const std::string& basisSpecies(const std::string& element) const;
    const std::string& ionName(const std::string& element) const;
    /// Molar mass of the element's reported ion, g/mol (61.0191 for "C", 96.064 for "S(6)").
    double molarMass(const std::string& element) const;
    /// The element a dissolved gas is counted in ("CO2" -> "C", "H2S" -> "S(-2)").
    const std::string& gasElement(const std::string& gas) const;
    /// g/mol of "H2O", "CO2" or "H2S".
    double molecularWeight(const std::string& species) const;
    /// The element reported by an ion name ("HCO3-" -> "C", "SO4-2" -> "S(6)").
    const std::string& labIonElement(const std::string& ion) const;
    /// The counted-charge form of a spread-charge laboratory ion name ("SO4--" -> "SO4-2").
    const std::string& countedChargeName(const std::string& name) const;
    /// The reaction documents as JSON text, document 1 first.
    const std::vector<std::string>& documents() const { return documents_; }

    /// Entry-order listings, for showing the vocabulary to a user.
    const std::vector<Element>& elements() const { return elements_; }
    /// (gas, element) pairs.
    const std::vector<NamePair>& gases() const { return gases_; }
    /// (spread-charge name, counted-charge name) pairs.
    const std::vector<NamePair>& spreadChargeNames() const { return spreadChargeNames_; }

private:
    const Element& element(const std::string& name) const;

    std::vector<Element> elements_;
    std::unordered_map<std::string, std::size_t> elementIndex_;
    std::vector<NamePair> gases_;
    std::unordered_map<std::string, std::string> gasElements_;
    std::unordered_map<std::string, double> molecularWeights_;
    std::vector<NamePair> spreadChargeNames_;
    std::unordered_map<std::string, std::string> countedChargeNames_;
    std::unordered_map<std::string, std::string> ionElements_;
    std::vector<std::string> documents_;
};

}  // namespace Brinecast
}  // namespace korvane
