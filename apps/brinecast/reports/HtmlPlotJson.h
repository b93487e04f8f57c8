#pragma once

#include "brinecast/reports/HtmlDocument.h"

#include <string>

namespace korvane::Brinecast::cli {

/// A plot's numbers as the page's chart script reads them:
/// {"title","xLabel","yLabel","referenceY","x":[...],"series":[{"name","y":[...]}]}.
/// Points are in increasing x, as the chart's cursor needs; a point whose x is not finite is
/// left out. A y that is NaN, infinite or missing (a series shorter than x) is null, a gap in
/// its line; a reference line that is not finite is null, none. Text is valid UTF-8.
class HtmlPlotJson {
public:
    static std::string write(const HtmlPlot& plot);
};

}  // namespace korvane::Brinecast::cli
