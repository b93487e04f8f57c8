#pragma once

#include "FrameSpeciator.h"

#include <string>
#include <vector>

namespace korvane::Brinecast::python {

/// Results as columns named as in the command line's CSV report, one entry per analysis in
/// input order: pH, status, message, the conditions, the solver's diagnostics, then
/// "<species> (mol/kgw)" for every species any analysis has, in order of first appearance.
/// NaN (or "") where a row has no value.
class FrameReport {
public:
    struct Column {
        std::string name;
        bool text = false;
        std::vector<double> numbers;
        std::vector<std::string> texts;
    };

    static std::vector<Column> of(const std::vector<FrameRow>& rows);
};

}  // namespace korvane::Brinecast::python
