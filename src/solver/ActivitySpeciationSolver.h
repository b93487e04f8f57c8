#pragma once

#include "solver/LogSpeciationSolver.h"
#include "solver/SpeciationSystem.h"
#include "tools/ValueArray.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace korvane {
namespace Brinecast {

class ActivityCoefficientModel;

/// How an activity speciation ended.
struct ActivityOutcome {
    bool converged = false;
    std::uint64_t iterations = 0;       ///< Newton steps of every log-space solve together
    std::uint64_t activityUpdates = 0;  ///< times the activity coefficients were recomputed
};

/// The speciation equations with activities: log m_k = log K_k(I) + Σ_j A(j, k)·log a_j − log γ_k.
///
/// With the ionic strength I and the solute molality Σm held fixed, every γ, the water activity
/// and log K are fixed, and the equations are the ideal ones with shifted constants: the
/// log-space solver solves them with its convergence guarantee. An outer iteration then seeks
/// the (ln I, ln Σm) at which the molalities reproduce themselves, by Broyden's method on the
/// two-by-two fixed-point residual, started as plain substitution; each inner solve starts from
/// the previous answer, so it takes a few Newton steps only. Converged when the inner solve
/// closes to the tolerance and ln I and ln Σm reproduce themselves to the tolerance.
///
/// Built per calculation, it serves one thread; `model` must outlive it.
class ActivitySpeciationSolver {
public:
    /// `idealWaterLogActivity`: log10 of the water activity an ideal model's mass action uses.
    ActivitySpeciationSolver(const SpeciationSystem& system, const ValueArray& totals,
                             const ActivityCoefficientModel& model, double idealWaterLogActivity);

    /// Holds the activity of "H+" at 10^−pH: its molality follows γ(H+) at every activity update.
    void fixPH(double pH);
    /// Replaces a mass balance with `row`, as LogSpeciationSolver::impose; needs the pH fixed first.
    void impose(const ImposedRow& row) { inner_.impose(row); }
    /// The totals (mol/kgw) the imposed rows settled, written into `totals`.
    void derivedTotals(ValueArray& totals) const { inner_.derivedTotals(totals); }
    /// As LogSpeciationSolver::unreachableBasis.
    std::size_t unreachableBasis() const { return inner_.unreachableBasis(); }

    ActivityOutcome solve(double tolerance, std::uint64_t iterationLimit);

    /// Molality (mol/kgw) of every species of the system, in its order.
    const std::vector<double>& molalities() const { return inner_.molalities(); }
    /// Free molality (mol/kgw) of basis names 1..N−1, as LogSpeciationSolver gives them.
    ValueArray freeMolalities() const { return inner_.freeMolalities(); }
    /// log10 γ of every species of the system, at the ionic strength reported.
    const std::vector<double>& logActivityCoefficients() const { return logGamma_; }
    /// The ionic strength (mol/kgw) at which γ, log K and the water activity were evaluated.
    double ionicStrength() const { return ionicStrength_; }
    double logWaterActivity() const { return logWaterActivity_; }
    /// −log10 of the activity of "H+".
    double pH() const;

private:
    /// I and Σm (mol/kgw) of the current molalities.
    void measure(double& ionicStrength, double& soluteMolality) const;
    /// γ, log K and the water activity at I and Σm, folded into the inner solver's constants.
    void fold(double ionicStrength, double soluteMolality);

    const SpeciationSystem& system_;
    const ActivityCoefficientModel& model_;
    ValueArray totals_;  ///< mol/kgw per basis name
    LogSpeciationSolver inner_;
    std::vector<double> halfChargeSquared_;  ///< per species; 0 for water
    std::vector<double> solute_;             ///< per species: 1, or 0 for water itself
    std::vector<double> logGamma_, logK_, logConstants_;
    std::vector<double> basisLogGamma_;  ///< per basis name: log γ of its species, log a_w for water
    double ionicStrength_ = 0.0;
    double logWaterActivity_ = 0.0;
    bool pHFixed_ = false;
    double fixedPH_ = 0.0;
};

}  // namespace Brinecast
}  // namespace korvane
