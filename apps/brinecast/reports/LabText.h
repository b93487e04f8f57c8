#pragma once

#include "brinecast/calculation/AnalysisResult.h"

#include <string>

namespace korvane::Brinecast::cli {

/// The words every report format shares for what a lab reads off a result: where the pH came
/// from, the alkalinity, the dissolved solids and what the measured pH imposed.
class LabText {
public:
    /// "measured" or "charge balance".
    static std::string pHSource(const AnalysisResult& result);
    /// "86737 mg/L, 83081 mg/kg of solution"; the mg/L part left out when the density is not known.
    static std::string solids(const DissolvedSolids& solids);
    /// "8.13 meq/kgw (496 mg/L as HCO3-)", with what the measured alkalinity derived.
    static std::string alkalinity(const AnalysisResult& result);
    /// "Cl: total 1.4 mol/kgw after -0.00023 mol/kgw, to close the charge balance at the measured pH".
    static std::string balancedWith(const ConstraintOutcome& outcome);
};

}  // namespace korvane::Brinecast::cli
