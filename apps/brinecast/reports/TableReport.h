#pragma once

#include "brinecast/calculation/AnalysisResult.h"
#include "brinecast/readers/ComponentNames.h"

#include <ostream>
#include <vector>

namespace korvane::Brinecast::cli {

/// Results for a reader: conditions, charge balance, pH, checks and warnings, then each
/// component's species in aligned columns.
class TableReport {
public:
    static void writeSpeciation(std::ostream& out, const std::vector<AnalysisResult>& results,
                                const ComponentNames& names);
    /// One line per analysis: name, pH, status.
    static void writePH(std::ostream& out, const std::vector<AnalysisResult>& results);
};

}  // namespace korvane::Brinecast::cli
