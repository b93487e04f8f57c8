#pragma once

#include <korvane/Brinecast.h>

#include <optional>
#include <string>
#include <vector>

namespace korvane::Brinecast::cli {

/// One water analysis as read from a file, already in the library's names and units.
struct Analysis {
    std::string name;
    std::string description;
    /// Where it came from, for messages: "water.json" or "batch.csv:12".
    std::string source;
    double temperatureK = 298.15;
    double pressurePa = 101325.0;
    /// Brine density in g/cm3; 0 when the analysis gives none.
    double densityGcm3 = 0.0;
    ConcentUnit unit = Undefined;
    /// Library element names with amounts in `unit`; lab ion names are already converted.
    std::vector<NameValue> elements;
    /// Dissolved gases by library gas name, mol/kgw.
    std::vector<NameValue> gases;
    /// The part of the "C" amount that the analysis reported as carbonate (CO3--), in `unit`
    /// and, for mass units, as the bicarbonate mass the library counts carbon in.
    double carbonateCarbon = 0.0;
    /// Measured pH; empty when the pH is to follow from the charge balance.
    std::optional<double> pH;
    /// Measured alkalinity, meq/L, titrated at the measured pH.
    std::optional<double> alkalinityMeqPerL;
    /// Library element whose total takes up the charge imbalance at the measured pH; empty: none.
    std::string balanceWith;
    /// Conversions made while reading, worded for the report.
    std::vector<std::string> notes;
};

}  // namespace korvane::Brinecast::cli
