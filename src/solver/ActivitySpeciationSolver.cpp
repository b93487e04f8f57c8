#include "solver/ActivitySpeciationSolver.h"

#include "activity/ActivityCoefficientModel.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace korvane {
namespace Brinecast {

namespace {

constexpr std::size_t kWater = 0;
constexpr std::size_t kHydrogen = 1;
/// Most activity updates; a handful are usual, substitution alone would need tens in strong brines.
constexpr std::uint64_t kLargestUpdates = 100;
/// Largest change of ln I or ln Σm in one update: the coefficients of the first, ideal answer
/// can be far off, and a long secant step can leave the range where a_w is positive.
constexpr double kLargestLogChange = 1.0;

/// Tolerance of the first solve, which only estimates I and Σm. Loosening the later solves as
/// well saves Newton steps but costs activity updates (each inner error enters the next update),
/// and an update costs as much as a Newton step: measured, it does not pay.
constexpr double kEstimateTolerance = 1e-2;

double largestMagnitude(const double* v, std::size_t n) {
    double largest = 0.0;
    for (std::size_t i = 0; i < n; ++i) largest = std::max(largest, std::fabs(v[i]));
    return largest;
}

/// Broyden's method on a two-by-two fixed-point residual r(y) = F(y) − y, started as plain
/// substitution (Jacobian −1) and falling back to it whenever the secant model stops pointing
/// along the residual; each step is capped at kLargestLogChange.
class TwoBySecant {
public:
    void next(const double residual[2], double step[2]) {
        if (!first_) {
            // Good Broyden update: J += (Δr − J·Δy) Δyᵀ / (Δyᵀ Δy).
            const double change[2] = {residual[0] - residual_[0], residual[1] - residual_[1]};
            const double norm = step_[0] * step_[0] + step_[1] * step_[1];
            for (int i = 0; i < 2; ++i) {
                const double miss = change[i] - (jacobian_[i][0] * step_[0] + jacobian_[i][1] * step_[1]);
                for (int j = 0; j < 2; ++j) jacobian_[i][j] += miss * step_[j] / norm;
            }
        }
        first_ = false;
        residual_[0] = residual[0];
        residual_[1] = residual[1];
        const double det = jacobian_[0][0] * jacobian_[1][1] - jacobian_[0][1] * jacobian_[1][0];
        step_[0] = -(jacobian_[1][1] * residual[0] - jacobian_[0][1] * residual[1]) / det;
        step_[1] = -(-jacobian_[1][0] * residual[0] + jacobian_[0][0] * residual[1]) / det;
        if (!std::isfinite(step_[0]) || !std::isfinite(step_[1]) || step_[0] * residual[0] + step_[1] * residual[1] <= 0.0) {
            jacobian_[0][0] = jacobian_[1][1] = -1.0;
            jacobian_[0][1] = jacobian_[1][0] = 0.0;
            step_[0] = residual[0];
            step_[1] = residual[1];
        }
        const double longest = largestMagnitude(step_, 2);
        if (longest > kLargestLogChange) {
            step_[0] *= kLargestLogChange / longest;
            step_[1] *= kLargestLogChange / longest;
        }
        step[0] = step_[0];
        step[1] = step_[1];
    }

private:
    double jacobian_[2][2] = {{-1.0, 0.0}, {0.0, -1.0}};
    double residual_[2] = {0.0, 0.0};
    double step_[2] = {0.0, 0.0};
    bool first_ = true;
};

}  // namespace

ActivitySpeciationSolver::ActivitySpeciationSolver(const SpeciationSystem& system, const ValueArray& totals,
                                                   const ActivityCoefficientModel& model, double idealWaterLogActivity)
    : system_(system),
      model_(model),
      totals_(totals),
      inner_(system, totals, idealWaterLogActivity),
      halfChargeSquared_(system.speciesCount()),
      solute_(system.speciesCount(), 1.0),
      logGamma_(system.speciesCount(), 0.0),
      logK_(system.speciesCount(), 0.0),
      logConstants_(system.speciesCount(), 0.0),
      basisLogGamma_(system.basisCount, 0.0) {
    for (std::size_t k = 0; k < system.speciesCount(); ++k) {
        halfChargeSquared_[k] = 0.5 * system.charges[k] * system.charges[k];
    }
    if (system.masterSpecies[kWater] >= 0) solute_[static_cast<std::size_t>(system.masterSpecies[kWater])] = 0.0;
}

void ActivitySpeciationSolver::measure(double& ionicStrength, double& soluteMolality) const {
    const std::vector<double>& m = inner_.molalities();
    ionicStrength = 0.0;
    soluteMolality = 0.0;
    for (std::size_t k = 0; k < m.size(); ++k) {
        ionicStrength += halfChargeSquared_[k] * m[k];
        soluteMolality += solute_[k] * m[k];
    }
}

void ActivitySpeciationSolver::fold(double ionicStrength, double soluteMolality) {
    ionicStrength_ = ionicStrength;
    model_.logActivityCoefficients(ionicStrength, logGamma_.data());
    model_.logEquilibriumConstants(ionicStrength, logK_.data());
    logWaterActivity_ = model_.logWaterActivity(soluteMolality);
    const std::size_t n = system_.basisCount;
    // log γ of each basis species as it enters a mass-action law; water enters through a_w.
    for (std::size_t j = kHydrogen; j < n; ++j) {
        if (system_.masterSpecies[j] >= 0) basisLogGamma_[j] = logGamma_[static_cast<std::size_t>(system_.masterSpecies[j])];
    }
    basisLogGamma_[kWater] = logWaterActivity_;
    if (pHFixed_) inner_.fixHydrogen(-fixedPH_ - basisLogGamma_[kHydrogen]);
    for (std::size_t k = 0; k < logConstants_.size(); ++k) {
        const double* a = system_.coefficientsOf(k);
        double c = logK_[k] - logGamma_[k];
        for (std::size_t j = 0; j < n; ++j) c += a[j] * basisLogGamma_[j];
        logConstants_[k] = c;
    }
    inner_.setLogConstants(logConstants_);
}

void ActivitySpeciationSolver::fixPH(double pH) {
    pHFixed_ = true;
    fixedPH_ = pH;
    inner_.fixHydrogen(-pH - basisLogGamma_[kHydrogen]);
}

double ActivitySpeciationSolver::pH() const {
    const std::int32_t hydrogen = system_.masterSpecies[kHydrogen];
    const double logGamma = hydrogen >= 0 ? logGamma_[static_cast<std::size_t>(hydrogen)] : 0.0;
    return -(std::log10(inner_.freeMolalities()[0]) + logGamma);
}

ActivityOutcome ActivitySpeciationSolver::solve(double tolerance, std::uint64_t iterationLimit) {
    ActivityOutcome outcome;
    // Every component free gives the first estimate of I and Σm: close enough in most brines that
    // the cold solve lands near the answer, and never below it by more than the complexes take.
    if (!model_.ideal()) {
        double ionicStrength = 0.0, soluteMolality = 0.0;
        for (std::size_t j = 2; j < system_.basisCount; ++j) {
            const double total = totals_[j];
            if (!(total > 0.0)) continue;
            ionicStrength += 0.5 * system_.basisCharges[j] * system_.basisCharges[j] * total;
            soluteMolality += total;
        }
        fold(ionicStrength, soluteMolality);
    }
    // For a non-ideal model this solve only estimates I and Σm: it need not be exact.
    LogSolverOutcome inner =
        inner_.solve(model_.ideal() ? tolerance : std::max(tolerance, kEstimateTolerance), iterationLimit);
    outcome.iterations = inner.iterations;
    // A freed total out of reach at the estimated coefficients may be within reach at the right
    // ones: the molalities are still numbers, and the updates go on from them.
    const bool outOfReach = inner_.unreachableBasis() != SIZE_MAX;
    if (model_.ideal() || (!inner.converged && !outOfReach)) {
        double soluteMolality = 0.0;
        measure(ionicStrength_, soluteMolality);
        outcome.converged = inner.converged;
        return outcome;
    }

    double measured[2];
    measure(measured[0], measured[1]);
    double y[2] = {std::log(measured[0]), std::log(measured[1])};
    TwoBySecant secant;
    while (outcome.activityUpdates < kLargestUpdates) {
        fold(std::exp(y[0]), std::exp(y[1]));
        ++outcome.activityUpdates;
        inner = inner_.resolve(tolerance, iterationLimit);
        outcome.iterations += inner.iterations;
        // Out of reach at coefficients still on their way is no verdict: only where I and Σm
        // reproduce themselves.
        const bool outOfReachHere = inner_.unreachableBasis() != SIZE_MAX;
        if (!inner.converged && !outOfReachHere) return outcome;
        measure(measured[0], measured[1]);
        const double residual[2] = {std::log(measured[0]) - y[0], std::log(measured[1]) - y[1]};
        if (!std::isfinite(residual[0]) || !std::isfinite(residual[1])) return outcome;
        if (largestMagnitude(residual, 2) <= tolerance) {
            outcome.converged = inner.converged;
            return outcome;
        }
        double step[2];
        secant.next(residual, step);
        y[0] += step[0];
        y[1] += step[1];
    }
    return outcome;
}

}  // namespace Brinecast
}  // namespace korvane
