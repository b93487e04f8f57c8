#pragma once

#include "brinecast/AnalysisResult.h"

#include <string>
#include <vector>

namespace korvane::Brinecast::python {

/// Results as the columns of the command line's CSV report, one entry per analysis in input
/// order: pH, status, message, the conditions and checks, then "<species> (mol/kgw)" for every
/// species any analysis has, in order of first appearance. NaN (or "") where a row has no value.
class FrameReport {
public:
    struct Column {
        std::string name;
        bool text = false;
        std::vector<double> numbers;
        std::vector<std::string> texts;
    };

    static std::vector<Column> of(const std::vector<cli::AnalysisResult>& results);
};

}  // namespace korvane::Brinecast::python
