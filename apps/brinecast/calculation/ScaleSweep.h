#pragma once

#include <korvane/MineralSaturation.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace korvane::Brinecast::cli {

/// Saturation indices along a mixing sweep or a temperature-pressure profile: one point per
/// step, each with its conditions, pH and the minerals its brine can form.
struct ScaleSweep {
    struct Point {
        double x = 0.0;            ///< the mixing fraction of the second water, or the step number
        double temperatureK = 0.0;
        double pressurePa = 0.0;
        double pH = 0.0;
        bool converged = false;
        std::vector<MineralSaturation> minerals;
    };
    std::string title;   ///< "Mix of seawater into formation water", for headings
    std::string xKey;    ///< JSON and CSV name of x: "fraction" or "step"
    std::string xLabel;  ///< axis and column label of x
    std::vector<std::pair<std::string, std::string>> facts;  ///< the inputs, as label and value
    std::string activity;  ///< the sweep's model and, under auto, why: "pitzer (auto)"
    /// Under Pitzer, the minerals of the waters that the Pitzer data lack.
    std::vector<std::string> mineralsNotAvailable;
    std::vector<Point> points;

    /// Every mineral of any point, in the order they first appear.
    std::vector<std::string> mineralNames() const {
        std::vector<std::string> names;
        for (const Point& p : points) {
            for (const MineralSaturation& m : p.minerals) {
                if (std::find(names.begin(), names.end(), m.name) == names.end()) names.push_back(m.name);
            }
        }
        return names;
    }
};

}  // namespace korvane::Brinecast::cli
