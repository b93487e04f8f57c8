#pragma once

#include "brinecast/calculation/ScaleAnalysis.h"
#include "brinecast/calculation/ScaleSweep.h"
#include "brinecast/reports/HtmlDocument.h"

#include <vector>

namespace korvane::Brinecast::cli {

/// What the HTML page of each scale command shows.
class ScaleHtml {
public:
    /// One section per analysis: its conditions as facts and its mineral table.
    static HtmlDocument analysesDocument(const std::vector<ScaleAnalysis>& analyses);
    /// The inputs as facts, the SI table, and SI of every mineral against x, saturation marked.
    static HtmlDocument sweepDocument(const ScaleSweep& sweep);
};

}  // namespace korvane::Brinecast::cli
