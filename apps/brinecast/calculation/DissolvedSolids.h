#pragma once

#include "brinecast/readers/Analysis.h"

#include <cmath>

namespace korvane::Brinecast::cli {

/// Total dissolved solids of an analysis as a lab sums them: the masses of its elements as the
/// ions they are reported as (C as HCO3-, S(6) as SO4--, the masses a mg-based analysis counts),
/// dissolved gases left out. With them, the mass of water in a litre and a kg of solution.
struct DissolvedSolids {
    double mgPerL = NAN;           ///< NaN when the density is not known
    double mgPerKg = NAN;          ///< mg per kg of solution
    double kgWaterPerL = NAN;      ///< NaN when the density is not known
    double kgWaterPerKg = NAN;     ///< kg of water per kg of solution

    /// `densityGcm3` <= 0 when the brine density is not known.
    static DissolvedSolids of(const Analysis& analysis, double densityGcm3);

    /// eq/kgw from an amount of charge in `unit`'s charge basis (eq/L, eq/kg or eq/kgw); NaN when
    /// that needs the unknown density.
    double perKgWater(double amount, ConcentUnit unit) const;
};

}  // namespace korvane::Brinecast::cli
