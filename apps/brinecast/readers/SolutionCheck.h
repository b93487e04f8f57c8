#pragma once

#include "brinecast/readers/Analysis.h"

#include <string>
#include <vector>

namespace korvane::Brinecast::cli {

/// Whether an analysis describes a liquid brine that the reaction data can speak for, checked
/// before it is calculated: a non-solution refused with an `InputError` naming the value and
/// what is accepted, a result outside its models' fitted range kept with a warning.
class SolutionCheck {
public:
    /// What no density can make a solution: mg/kg amounts that weigh the whole kilogram,
    /// per-litre amounts heavier than the densest brine, more dissolved matter than the limit.
    /// For an analysis whose density is still to be computed.
    static void requireAmounts(const Analysis& analysis);
    /// The same at the density the calculation will use (g/cm3; given, or computed when
    /// `computed`): a density no brine has, solids heavier than the litre holding them, more
    /// dissolved matter than the limit.
    static void requireSolution(const Analysis& analysis, double densityGcm3, bool computed);
    /// Dissolved elements and gases in mol/kgw, converted as the library converts them.
    static double dissolvedMolality(const Analysis& analysis, double densityGcm3);
    /// Where the result stands but leaves a model's fitted range.
    static std::vector<std::string> warnings(const Analysis& analysis, bool densityComputed,
                                             double densityGcm3);
    /// Water's boiling pressure, Pa, at `temperatureK` (273.15 K to 647.096 K).
    static double boilingPressurePa(double temperatureK);
};

}  // namespace korvane::Brinecast::cli
