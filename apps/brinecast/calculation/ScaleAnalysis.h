#pragma once

#include <korvane/MineralSaturation.h>
#include <korvane/PrecipitationPotential.h>

#include <cmath>
#include <string>
#include <vector>

namespace korvane::Brinecast::cli {

/// What `brinecast scale` reports about one analysis: its conditions, its pH and, per mineral it
/// can form, the saturation and the amount that must deposit to end it.
struct ScaleAnalysis {
    struct Mineral {
        MineralSaturation saturation;
        PrecipitationPotential potential;
    };
    std::string name;
    std::string source;
    double temperatureK = NAN;
    double pressurePa = NAN;
    double densityGcm3 = NAN;      ///< given, or computed by the engine for per-litre analyses
    std::string densitySource;     ///< "given", "engine" or "not needed (1.0 taken)"
    double pH = NAN;
    bool converged = false;        ///< the speciation and every precipitation search converged
    std::string activity;          ///< the model and, under auto, why: "pitzer (auto)"
    /// Under Pitzer, the minerals of the analysis that the Pitzer data lack.
    std::vector<std::string> mineralsNotAvailable;
    std::vector<Mineral> minerals; ///< most supersaturated first
};

}  // namespace korvane::Brinecast::cli
