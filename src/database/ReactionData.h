#pragma once

#include <string>
#include <unordered_map>
#include <vector>

namespace korvane {
namespace Brinecast {

/// One reaction of the database as its JSON record gives it. Absent keys leave the defaults.
struct ReactionData {
    /// Species name -> coefficient; reactants negative, products positive, a master species X -> 1.
    std::unordered_map<std::string, double> stoich;
    double logK = 0.0;                ///< log10 K at 298.15 K ("log_k")
    double deltaH = 0.0;              ///< reaction enthalpy at 298.15 K, kcal/mol ("delta_h")
    std::vector<double> analytical;   ///< coefficients of log K(T) on 1, T, 1/T, log10 T, 1/T2, T2 (T in K)
    std::vector<double> dw;           ///< tracer diffusion parameters ("dw"); carried, not used
    std::vector<double> Vm;           ///< molar-volume parameters ("Vm"); carried, not used
    std::vector<double> gamma;        ///< ion size a (Angstrom) and b of extended Debye-Hueckel; carried, not used
};

}  // namespace Brinecast
}  // namespace korvane
