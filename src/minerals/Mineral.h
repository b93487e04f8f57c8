#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace korvane {
namespace Brinecast {

/// One scale mineral as its data record gives it: the dissolution reaction over the aqueous
/// species a mineral set knows, and how log10 K depends on temperature.
struct Mineral {
    /// One product (coefficient > 0) or reactant (< 0) of the dissolution, the solid excluded.
    struct Term {
        std::int32_t species = 0;  ///< index into the set's aqueous species, or kHydrogen, kWater
        double coefficient = 0.0;
    };
    static constexpr std::int32_t kHydrogen = -1;  ///< H+, whose activity is 10^−pH
    static constexpr std::int32_t kWater = -2;     ///< H2O, whose activity is a_w

    std::string name;
    std::vector<Term> terms;
    double logK25 = 0.0;             ///< log10 K at 298.15 K
    double deltaHKJPerMol = 0.0;     ///< van 't Hoff enthalpy of dissolution, kJ/mol
    std::vector<double> analytical;  ///< log10 K(T) on 1, T, 1/T, log10 T, 1/T², T² (T in K); wins when present
    double solidVolumeCm3PerMol = 0.0;  ///< molar volume of the solid; 0 when the data has none

    /// 1, T, 1/T, log10 T, 1/T², T² at `temperatureK` (K): the terms of the analytical
    /// expression, computed once for all minerals of a brine.
    static std::array<double, 6> temperatureTerms(double temperatureK);
    /// log10 K of the dissolution at 1 atm and the temperature of `terms`.
    double logKAt(const std::array<double, 6>& terms) const;
};

}  // namespace Brinecast
}  // namespace korvane
