#pragma once
/// What a laboratory measured beside the analysis, imposed on its speciation.

#include <optional>
#include <string>

namespace korvane {
namespace Brinecast {

/// Measured quantities that take the place of equations of the speciation. The default imposes
/// nothing: the pH follows from the charge balance and every total is the analysis' own, exactly
/// as without constraints.
///
/// Refused with std::invalid_argument, naming the value: a pH that is not a number within 0-14;
/// an alkalinity that is not finite, or given without a pH (alkalinity is a titration to a
/// pH-dependent end point, meaningless without the pH); a closing component without a pH (the
/// charge balance then fixes the pH), that is not a component of the analysis with a positive
/// amount, that is carbon while the alkalinity sets carbon, or that needs a negative amount to
/// close the balance (its charge has the sign of the excess); an alkalinity below what the water
/// and the other components give at that pH without any carbon.
struct Constraints {
    /// Measured pH, −log10 of the activity of "H+" under the activity model of the calculation
    /// (under Pitzer on the single-ion scale SolveOptions::macInnes chooses): it replaces the
    /// charge balance. Empty: the pH follows from the charge balance.
    std::optional<double> pH;
    /// Measured alkalinity (eq/kgw) at the measured pH: total carbon is derived from it and any
    /// carbon of the analysis (element "C" or gas "CO2") only serves as the name; an analysis
    /// without carbon gets it. Each species counts with its basis species' alkalinities: +2 for
    /// CO3-2, +1 for HS- and OH-, −1 for H+, 0 otherwise (so HCO3- counts 1 and CO2 0).
    /// Carbon is known only as finely as the alkalinity closes, to the tolerance times
    /// Σ|alk_k|·m_k: a trace of carbon beside much alkalinity, or any carbon below about pH 1
    /// (all of it CO2, which counts 0), is poorly determined or not found at all.
    std::optional<double> alkalinity;
    /// Component whose total is adjusted to close the charge balance at the measured pH, named
    /// as the analysis names it ("Cl", "Na"). Empty: the totals stand and the imbalance is
    /// reported in the diagnostics. Its total is known to the tolerance times Σ|z_k|·m_k, so a
    /// trace ion's own mass balance may close less finely than the others.
    std::string balanceWith;
};

}  // namespace Brinecast
}  // namespace korvane
