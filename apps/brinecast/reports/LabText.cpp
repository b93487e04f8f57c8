#include "brinecast/reports/LabText.h"

#include "brinecast/reports/NumberText.h"

#include <cmath>

namespace korvane::Brinecast::cli {
namespace {

std::string signedNumber(double value, int digits) {
    return (value > 0 ? "+" : "") + NumberText::significant(value, digits);
}

}  // namespace

std::string LabText::pHSource(const AnalysisResult& r) {
    return r.constraints.pHFixed || r.analysis.pH ? "measured" : "charge balance";
}

std::string LabText::solids(const DissolvedSolids& s) {
    const std::string perKg = NumberText::significant(s.mgPerKg, 6) + " mg/kg of solution";
    if (!std::isfinite(s.mgPerL)) return perKg;
    return NumberText::significant(s.mgPerL, 6) + " mg/L, " + perKg;
}

std::string LabText::alkalinity(const AnalysisResult& r) {
    std::string text = NumberText::significant(r.alkalinityEqPerKgw * 1e3, 6) + " meq/kgw";
    if (r.constraints.alkalinityImposed && r.analysis.alkalinityMeqPerL) {
        text += ", measured as " + NumberText::significant(*r.analysis.alkalinityMeqPerL, 6) +
                " meq/L; total carbon derived from it " +
                NumberText::significant(r.constraints.derivedCarbon, 6) + " mol/kgw";
    } else {
        text += ", from the species";
    }
    return text;
}

std::string LabText::balancedWith(const ConstraintOutcome& c) {
    return c.balancedWith + ": total " + NumberText::significant(c.balancedTotal, 6) + " mol/kgw after " +
           signedNumber(c.balanceAdjustment, 4) +
           " mol/kgw, to close the charge balance at the measured pH";
}

}  // namespace korvane::Brinecast::cli
