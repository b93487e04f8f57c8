#pragma once
/// What the constraints of a speciation imposed, and what it derived from them.

#include <string>

namespace korvane {
namespace Brinecast {

/// The constraints' part of a result: what was imposed and which totals were derived.
struct ConstraintOutcome {
    bool pHFixed = false;            ///< the pH was imposed; otherwise it followed from the charge balance
    bool alkalinityImposed = false;  ///< total carbon was derived from a measured alkalinity
    /// Component whose total closed the charge balance, as the constraints named it; empty when none.
    std::string balancedWith;
    double balanceAdjustment = 0.0;  ///< mol/kgw added to that component's total (negative: taken away)
    double balancedTotal = 0.0;      ///< mol/kgw, that component's total after the adjustment
    double derivedCarbon = 0.0;      ///< mol/kgw, total carbon that meets the alkalinity; 0 unless imposed
};

}  // namespace Brinecast
}  // namespace korvane
