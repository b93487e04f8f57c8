#pragma once

#include "database/ElementTable.h"

#include <map>
#include <mutex>
#include <optional>
#include <string>

namespace korvane::Brinecast::cli {

/// The names an analysis may give its components: the library's element names, laboratory ion
/// names ("Ca++", "SO4--", "HCO3-", or counted as "Ca+2"), carbonate as "CO3--", and the gases.
class ComponentNames {
public:
    struct Element {
        std::string name;        ///< the library's element name
        bool carbonate = false;  ///< given as CO3--: the amount is carbonate, counted as "C"
        /// |charge| of the ion the name stands for: the lab ion's, or for an element name the
        /// charge of the ion it is reported as (1 for "C", read as HCO3-; 2 for "S(6)", SO4--).
        int charge = 0;
    };

    /// The element `name` stands for, or nothing when the name is not known. Each name is
    /// resolved once: the library's name functions build a whole species model per call.
    std::optional<Element> element(const std::string& name) const;
    bool isGas(const std::string& name) const;
    /// The element whose basis species is `basis` ("CO3-2" -> "C"); `basis` itself if none.
    std::string elementOfBasis(const std::string& basis) const;

    /// Bicarbonate mass (g) that holds the carbon of 1 g of carbonate. The library counts a
    /// mass of "C" as bicarbonate mass, so a carbonate mass is scaled by this before it is added.
    double carbonateToBicarbonateMass() const;

    /// For messages: every accepted element and ion name.
    std::string acceptedElements() const;
    std::string acceptedGases() const;

    const ElementTable& table() const { return table_; }

private:
    std::optional<Element> resolve(const std::string& name) const;

    ElementTable table_;
    mutable std::mutex mutex_;
    mutable std::map<std::string, std::optional<Element>> resolved_;
};

}  // namespace korvane::Brinecast::cli
