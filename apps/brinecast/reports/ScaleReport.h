#pragma once

#include "brinecast/calculation/ScaleAnalysis.h"
#include "brinecast/calculation/ScaleSweep.h"

#include <ostream>
#include <string>
#include <vector>

namespace korvane::Brinecast::cli {

/// The scale commands' reports as text table, JSON or CSV (`format`).
class ScaleReport {
public:
    /// Per analysis its conditions, then one row per mineral: SI, log K, log IAP and the
    /// precipitation potential in mol/kgw and mg/L.
    static void writeAnalyses(std::ostream& out, const std::vector<ScaleAnalysis>& analyses, const std::string& format);
    /// One row per point: x, temperature, pressure, pH and the SI of every mineral.
    static void writeSweep(std::ostream& out, const ScaleSweep& sweep, const std::string& format);

    /// SI of `mineral` at `point`; NaN where the point's brine cannot form it.
    static double saturationIndex(const ScaleSweep::Point& point, const std::string& mineral);
};

}  // namespace korvane::Brinecast::cli
