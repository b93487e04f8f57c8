#pragma once
/// How much of one supersaturated mineral a brine can deposit before it is saturated.

#include <string>

namespace korvane {
namespace Brinecast {

/// The amount of one mineral that must leave the brine, alone, to bring its saturation index to
/// zero, the speciation (pH by charge balance) solved again at every trial amount. A hydrated
/// mineral (gypsum) takes its water of crystallisation with it, which concentrates the rest.
struct PrecipitationPotential {
    std::string name;                ///< "Barite", "Calcite", ...
    double saturationIndex = 0.0;    ///< SI of the brine as analysed
    double molPerKgw = 0.0;          ///< mol of mineral per kg of the analysed brine's water; 0 when SI <= 0
    double mgPerL = 0.0;             ///< mg of mineral per litre of the analysed brine; 0 when SI <= 0
    /// Every speciation of the search converged and the last amount brings |SI| below 1e-9;
    /// false leaves the best bracketed amount in the fields above.
    bool converged = true;
};

}  // namespace Brinecast
}  // namespace korvane
