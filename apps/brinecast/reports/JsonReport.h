#pragma once

#include "brinecast/calculation/AnalysisResult.h"
#include "brinecast/readers/ComponentNames.h"

#include <ostream>
#include <vector>

namespace korvane::Brinecast::cli {

/// Results as JSON for programs: every number at full precision (it reads back to the same
/// double), units in the key names, null for a number that is not finite.
class JsonReport {
public:
    static void writeSpeciation(std::ostream& out, const std::vector<AnalysisResult>& results,
                                const ComponentNames& names);
    static void writePH(std::ostream& out, const std::vector<AnalysisResult>& results);
};

}  // namespace korvane::Brinecast::cli
