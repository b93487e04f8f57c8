#pragma once

#include "brinecast/calculation/AnalysisResult.h"

#include <ostream>
#include <string>
#include <vector>

namespace korvane::Brinecast::cli {

/// Results as CSV, one row per analysis in input order: source, name, pH, status, message,
/// the conditions and checks, then one column per species (molality, mol/kgw) over every
/// species that any analysis has, in order of first appearance. Numbers are written at full
/// precision; a failed analysis keeps its row with its message and empty numbers.
class CsvReport {
public:
    static void write(std::ostream& out, const std::vector<AnalysisResult>& results,
                      bool withSpecies);
    /// Every species of `results`, in order of first appearance.
    static std::vector<std::string> speciesColumns(const std::vector<AnalysisResult>& results);
    /// The header line, with one column per name of `species` when `withSpecies`.
    static void writeHeader(std::ostream& out, const std::vector<std::string>& species,
                            bool withSpecies);
    /// One result's line; species it does not have are left empty.
    static void writeRow(std::ostream& out, const AnalysisResult& r,
                         const std::vector<std::string>& species, bool withSpecies);
    /// `text` as one CSV field, quoted when it holds a comma, quote or line break.
    static std::string field(const std::string& text);
};

}  // namespace korvane::Brinecast::cli
