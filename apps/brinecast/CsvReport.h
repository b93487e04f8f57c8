#pragma once

#include "brinecast/AnalysisResult.h"

#include <ostream>
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
    /// `text` as one CSV field, quoted when it holds a comma, quote or line break.
    static std::string field(const std::string& text);
};

}  // namespace korvane::Brinecast::cli
