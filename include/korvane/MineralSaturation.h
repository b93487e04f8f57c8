#pragma once
/// How far a solved brine is from equilibrium with one scale mineral.

#include <string>

namespace korvane {
namespace Brinecast {

/// The saturation state of one mineral at the analysis' temperature and pressure: positive
/// saturation index means supersaturated (the mineral may deposit), negative undersaturated.
struct MineralSaturation {
    std::string name;             ///< "Barite", "Calcite", ...
    double saturationIndex = 0.0; ///< log10 IAP − log10 K
    double logK = 0.0;            ///< log10 K of the dissolution at T and P (and, through the volumes, I)
    double logIAP = 0.0;          ///< log10 of the ion activity product of the dissolution's products
};

}  // namespace Brinecast
}  // namespace korvane
