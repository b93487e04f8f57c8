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

/// The loosest tolerance of an inner solve while the activities are still moving.
constexpr double kLoosestInnerTolerance = 1e-4;

double largestMagnitude(const double* v, std::size_t n) {
    double largest = 0.0;
    for (std::size_t i = 0; i < n; ++i) largest = std::max(largest, std::fabs(v[i]));
    return largest;
}

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
    for (std::size_t k = 0; k < logConstants_.size(); ++k) {
        const double* a = system_.coefficientsOf(k);
        double c = logK_[k] - logGamma_[k];
        for (std::size_t j = 0; j < n; ++j) c += a[j] * basisLogGamma_[j];
        logConstants_[k] = c;
    }
    inner_.setLogConstants(logConstants_);
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
        inner_.solve(model_.ideal() ? tolerance : std::max(tolerance, kLoosestInnerTolerance), iterationLimit);
    outcome.iterations = inner.iterations;
    if (model_.ideal() || !inner.converged) {
        double soluteMolality = 0.0;
        measure(ionicStrength_, soluteMolality);
        outcome.converged = inner.converged;
        return outcome;
    }

    double measured[2];
    measure(measured[0], measured[1]);
    double y[2] = {std::log(measured[0]), std::log(measured[1])};
    // Broyden's estimate of d(residual)/dy; −1 makes the first step plain substitution.
    double jacobian[2][2] = {{-1.0, 0.0}, {0.0, -1.0}};
    double residual[2] = {0.0, 0.0};
    double step[2] = {0.0, 0.0};
    bool first = true;
    double lastChange = kLoosestInnerTolerance;
    while (outcome.activityUpdates < kLargestUpdates) {
        fold(std::exp(y[0]), std::exp(y[1]));
        ++outcome.activityUpdates;
        // Far from the answer the inner solve need not be exact: a tenth of the last activity
        // change is enough, and the last solve is always made at the full tolerance.
        const double innerTolerance = std::max(tolerance, std::min(kLoosestInnerTolerance, 0.1 * lastChange));
        inner = inner_.resolve(innerTolerance, iterationLimit);
        outcome.iterations += inner.iterations;
        if (!inner.converged) return outcome;
        measure(measured[0], measured[1]);
        const double next[2] = {std::log(measured[0]) - y[0], std::log(measured[1]) - y[1]};
        if (!std::isfinite(next[0]) || !std::isfinite(next[1])) return outcome;
        lastChange = largestMagnitude(next, 2);
        if (lastChange <= tolerance) {
            if (innerTolerance == tolerance) {
                outcome.converged = true;
                return outcome;
            }
            continue;  // again at the same activities, solved to the full tolerance
        }
        if (!first) {
            // Good Broyden update: J += (Δr − J·Δy) Δyᵀ / (Δyᵀ Δy).
            const double dr[2] = {next[0] - residual[0], next[1] - residual[1]};
            const double norm = step[0] * step[0] + step[1] * step[1];
            for (int i = 0; i < 2; ++i) {
                const double miss = dr[i] - (jacobian[i][0] * step[0] + jacobian[i][1] * step[1]);
                for (int j = 0; j < 2; ++j) jacobian[i][j] += miss * step[j] / norm;
            }
        }
        first = false;
        residual[0] = next[0];
        residual[1] = next[1];
        const double det = jacobian[0][0] * jacobian[1][1] - jacobian[0][1] * jacobian[1][0];
        step[0] = -(jacobian[1][1] * residual[0] - jacobian[0][1] * residual[1]) / det;
        step[1] = -(-jacobian[1][0] * residual[0] + jacobian[0][0] * residual[1]) / det;
        if (!std::isfinite(step[0]) || !std::isfinite(step[1]) || step[0] * residual[0] + step[1] * residual[1] <= 0.0) {
            // The secant model lost its way: back to substitution.
            jacobian[0][0] = jacobian[1][1] = -1.0;
            jacobian[0][1] = jacobian[1][0] = 0.0;
            step[0] = residual[0];
            step[1] = residual[1];
        }
        const double longest = largestMagnitude(step, 2);
        if (longest > kLargestLogChange) {
            step[0] *= kLargestLogChange / longest;
            step[1] *= kLargestLogChange / longest;
        }
        y[0] += step[0];
        y[1] += step[1];
    }
    return outcome;
}

}  // namespace Brinecast
}  // namespace korvane
