#include "solver/LogSpeciationSolver.h"

#include "tools/CholeskySolver.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>

namespace korvane {
namespace Brinecast {

namespace {

constexpr double kLn10 = 2.302585092994045684;
constexpr std::size_t kHydrogen = 1;     // basis index of "H+"
constexpr double kWaterProduct = 1e-14;  // (mol/kgw)^2, only to place the first "H+" guess
/// Largest change of ln(free molality) in one step: a factor of 100.
constexpr double kLargestLogStep = 2.0 * kLn10;
constexpr int kBalancingPasses = 10;
constexpr double kBalancedLogRatio = 0.5;
/// A component whose species hold more than this many times its total is scaled down directly:
/// from above, a Newton step in log space moves it by little more than a factor of e.
constexpr double kOvershoot = 4.0;
constexpr double kSufficientDecrease = 1e-4;  // Armijo fraction of the predicted decrease of G
constexpr int kLargestHalvings = 60;
/// Whole powers up to this are read from a table of powers of each free molality.
constexpr int kLargestPower = 4;
constexpr std::size_t kPowerColumns = 2 * kLargestPower + 1;
constexpr double kEpsilon = std::numeric_limits<double>::epsilon();

/// Largest |v_i|, NaN when any entry is NaN: a step that is not a number is no small step.
double largestMagnitude(const std::vector<double>& v) {
    double largest = 0.0;
    for (double x : v) {
        if (std::isnan(x)) return x;
        if (std::fabs(x) > largest) largest = std::fabs(x);
    }
    return largest;
}

/// x^p for p = −kLargestPower..kLargestPower into row[p + kLargestPower].
inline void fillPowers(double x, double* row) {
    double* centre = row + kLargestPower;
    centre[0] = 1.0;
    centre[1] = x;
    centre[-1] = 1.0 / x;
    for (int p = 2; p <= kLargestPower; ++p) {
        centre[p] = centre[p - 1] * x;
        centre[-p] = centre[-p + 1] * centre[-1];
    }
}

}  // namespace

LogSpeciationSolver::LogSpeciationSolver(const SpeciationSystem& system, const ValueArray& totals,
                                         double waterLogActivity)
    : basisCount_(system.basisCount), molalities_(system.speciesCount(), 0.0) {
    if (system.chargeNotConserved) {
        throw std::logic_error("The log-space solver needs reactions that conserve charge, and the reaction that forms \"" +
                               *system.chargeNotConserved +
                               "\" does not; correct its coefficients or solve with the specified method.");
    }
    charges_.assign(system.charges.begin(), system.charges.end());
    selectUnknowns(system, totals, waterLogActivity);
    if (feasible_) startingPoint();
}

void LogSpeciationSolver::selectUnknowns(const SpeciationSystem& system, const ValueArray& totals,
                                         double waterLogActivity) {
    // Unknown number of each basis index; a component with a zero total has none.
    std::vector<std::int64_t> unknownOf(basisCount_, -1);
    basisOfUnknown_.push_back(kHydrogen);
    unknownOf[kHydrogen] = 0;
    double excessCharge = 0.0;  // Σ z_j·T_j, equivalents per kg of water
    target_.push_back(0.0);
    for (std::size_t j = 2; j < basisCount_; ++j) {
        const double total = totals[j];
        if (!(total >= 0.0) || !std::isfinite(total)) feasible_ = false;
        if (!(total > 0.0)) continue;
        unknownOf[j] = static_cast<std::int64_t>(basisOfUnknown_.size());
        basisOfUnknown_.push_back(j);
        target_.push_back(total);
        excessCharge += system.basisCharges[j] * total;
    }
    // Totals each finite can still sum past the largest double: no charge balance to meet then.
    if (!std::isfinite(excessCharge)) feasible_ = false;
    target_[0] = -excessCharge;

    active_.reserve(system.speciesCount());
    terms_.reserve(system.speciesCount() * 3);
    for (std::size_t k = 0; k < system.speciesCount(); ++k) {
        const double* a = system.coefficientsOf(k);
        ActiveSpecies species{k, std::exp(kLn10 * (system.logK[k] + a[0] * waterLogActivity)),
                              static_cast<std::uint32_t>(terms_.size()), 0};
        bool takesPart = true;
        // Unknowns ascend with the basis index, so the terms come out in ascending unknown order.
        for (std::size_t j = 1; j < basisCount_ && takesPart; ++j) {
            if (a[j] == 0.0) continue;
            takesPart = unknownOf[j] >= 0;
            const bool whole = std::fabs(a[j]) <= kLargestPower && a[j] == static_cast<int>(a[j]);
            const int rounded = whole ? static_cast<int>(a[j]) : 0;
            const auto unknown = static_cast<std::uint32_t>(unknownOf[j]);
            const std::uint32_t power =
                whole ? static_cast<std::uint32_t>(unknown * kPowerColumns + rounded + kLargestPower) : kNoPower;
            terms_.push_back({unknown, power, a[j]});
        }
        if (!takesPart) {
            terms_.resize(species.firstTerm);
            continue;
        }
        species.termCount = static_cast<std::uint32_t>(terms_.size()) - species.firstTerm;
        active_.push_back(species);
    }

    const std::size_t n = basisOfUnknown_.size();
    for (std::vector<double>* v : {&u_, &trial_, &balance_, &gradient_, &step_, &scale_}) v->assign(n, 0.0);
    powers_.assign(n * kPowerColumns, 0.0);
    hessian_.resize(n, n);
}

void LogSpeciationSolver::startingPoint() {
    // Every component free, and "H+" from the charge the totals leave over, as if water alone
    // took it up against OH-.
    // The root of h^2 + excess*h - Kw = 0, without squaring the excess (1e154 eq/kgw would overflow)
    // and in the form that loses no digits to cancellation on either side of neutral.
    const double excess = -target_[0];
    const double root = std::hypot(excess, 2.0 * std::sqrt(kWaterProduct));
    const double halfSum = excess >= 0.0 ? 0.5 * root + 0.5 * excess : 0.5 * root - 0.5 * excess;
    u_[0] = excess >= 0.0 ? std::log(kWaterProduct) - std::log(halfSum) : std::log(halfSum);
    for (std::size_t i = 1; i < u_.size(); ++i) u_[i] = std::log(target_[i]);
}

bool LogSpeciationSolver::evaluate(const double* u) {
    const std::size_t n = u_.size();
    for (std::size_t i = 0; i < n; ++i) {
        fillPowers(std::exp(u[i]), powers_.data() + i * kPowerColumns);
        balance_[i] = 0.0;
    }
    double sum = 0.0;
    for (const ActiveSpecies& species : active_) {
        const Term* term = terms_.data() + species.firstTerm;
        const Term* end = term + species.termCount;
        double m = species.constant;
        for (const Term* t = term; t < end; ++t)
            m *= t->power != kNoPower ? powers_[t->power] : std::exp(t->coefficient * u[t->unknown]);
        molalities_[species.species] = m;
        sum += m;
        for (const Term* t = term; t < end; ++t) balance_[t->unknown] += t->coefficient * m;
    }
    double linear = 0.0;
    double linearMagnitude = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        gradient_[i] = balance_[i] - target_[i];
        linear += target_[i] * u[i];
        linearMagnitude += std::fabs(target_[i] * u[i]);
    }
    g_ = sum - linear;
    gNoise_ = 16.0 * kEpsilon * (sum + linearMagnitude);
    return std::isfinite(g_);
}

void LogSpeciationSolver::balanceComponents() {
    for (int pass = 0; pass < kBalancingPasses; ++pass) {
        double worst = 0.0;
        for (std::size_t i = 1; i < u_.size(); ++i) {
            const double logRatio = std::log(target_[i] / balance_[i]);
            trial_[i] = u_[i];
            if (!std::isfinite(logRatio)) continue;
            worst = std::max(worst, std::fabs(logRatio));
            trial_[i] += logRatio;
        }
        // "H+" has no positive total to scale to: one Newton step of its balance alone.
        double curvature = 0.0;
        for (const ActiveSpecies& species : active_) {
            const Term& first = terms_[species.firstTerm];
            if (species.termCount > 0 && first.unknown == 0)
                curvature += first.coefficient * first.coefficient * molalities_[species.species];
        }
        double hydrogenStep = -gradient_[0] / curvature;
        if (!std::isfinite(hydrogenStep) || hydrogenFixed_) hydrogenStep = 0.0;
        hydrogenStep = std::max(-kLargestLogStep, std::min(kLargestLogStep, hydrogenStep));
        trial_[0] = u_[0] + hydrogenStep;
        if (!evaluate(trial_.data())) {
            evaluate(u_.data());
            return;
        }
        u_.swap(trial_);
        if (worst < kBalancedLogRatio && std::fabs(hydrogenStep) < kBalancedLogRatio) return;
    }
}

void LogSpeciationSolver::newtonStep() {
    const std::size_t n = u_.size();
    std::fill(hessian_.data(), hessian_.data() + n * n, 0.0);
    for (const ActiveSpecies& species : active_) {
        const double m = molalities_[species.species];
        const Term* first = terms_.data() + species.firstTerm;
        for (std::uint32_t t = 0; t < species.termCount; ++t) {
            double* row = hessian_.row(first[t].unknown);
            const double am = first[t].coefficient * m;
            for (std::uint32_t s = 0; s <= t; ++s) row[first[s].unknown] += am * first[s].coefficient;
        }
    }
    if (hydrogenFixed_) {
        reducedNewtonStep();
        return;
    }
    // Unit diagonal: the free molalities span many orders of magnitude.
    for (std::size_t i = 0; i < n; ++i) scale_[i] = 1.0 / std::sqrt(hessian_(i, i));
    for (std::size_t i = 0; i < n; ++i) {
        double* row = hessian_.row(i);
        for (std::size_t j = 0; j <= i; ++j) row[j] *= scale_[i] * scale_[j];
        step_[i] = -gradient_[i] * scale_[i];
    }
    if (!tools::CholeskySolver::factorize(hessian_)) {
        // Positive definite in exact arithmetic, and rounding lost it: the scaled gradient still
        // descends G.
        for (std::size_t i = 0; i < n; ++i) step_[i] = -gradient_[i] * scale_[i] * scale_[i];
        return;
    }
    tools::CholeskySolver::solve(hessian_, step_.data());
    for (std::size_t i = 0; i < n; ++i) step_[i] *= scale_[i];
}

bool LogSpeciationSolver::closes(double tolerance) const {
    // Every comparison is made on finite numbers only: an infinite balance would otherwise meet
    // an infinite total's tolerance, inf <= tol * inf.
    for (std::size_t i = 1; i < u_.size(); ++i) {
        if (!rows_.empty() && isFreed(i)) continue;  // judged with its row
        if (!std::isfinite(gradient_[i]) || !(std::fabs(gradient_[i]) <= tolerance * target_[i])) return false;
    }
    double charge = 0.0;
    double equivalents = 0.0;
    for (const ActiveSpecies& species : active_) {
        const double m = molalities_[species.species];
        charge += charges_[species.species] * m;
        equivalents += std::fabs(charges_[species.species]) * m;
    }
    if (!std::isfinite(equivalents) || !std::isfinite(charge) || !std::isfinite(g_)) return false;
    // A held "H+" leaves the charge balance to a row, or only to be reported.
    const bool chargeCloses = hydrogenFixed_ || std::fabs(charge) <= tolerance * equivalents;
    return chargeCloses && rowsClose(tolerance) && largestMagnitude(step_) <= tolerance;
}

bool LogSpeciationSolver::lineSearch() {
    const std::size_t n = u_.size();
    const double longest = largestMagnitude(step_);
    if (longest > kLargestLogStep) {
        for (double& s : step_) s *= kLargestLogStep / longest;
    }
    double descent = 0.0;  // dG along the step, negative
    for (std::size_t i = 0; i < n; ++i) descent += gradient_[i] * step_[i];
    const double startG = g_;
    const double startNoise = gNoise_;
    double t = 1.0;
    for (int halving = 0; halving <= kLargestHalvings; ++halving, t *= 0.5) {
        for (std::size_t i = 0; i < n; ++i) trial_[i] = u_[i] + t * step_[i];
        if (!evaluate(trial_.data())) continue;
        // Once the decrease of G drowns in its rounding, Newton is in its quadratic range and the
        // step is taken as it stands.
        if (g_ <= startG + kSufficientDecrease * t * descent || -t * descent <= startNoise) {
            u_.swap(trial_);
            return true;
        }
    }
    evaluate(u_.data());
    return false;
}

void LogSpeciationSolver::scaleDownOvershoots() {
    bool moved = false;
    for (std::size_t i = 1; i < u_.size(); ++i) {
        const double ratio = balance_[i] / target_[i];
        trial_[i] = u_[i];
        if (!(ratio > kOvershoot) || !std::isfinite(ratio)) continue;
        // The mean power the component carries in its species, weighted by what each holds:
        // Σ a²·m / Σ a·m, the diagonal of the Hessian over the balance.
        double curvature = 0.0;
        for (const ActiveSpecies& species : active_) {
            const Term* first = terms_.data() + species.firstTerm;
            for (std::uint32_t t = 0; t < species.termCount; ++t) {
                if (first[t].unknown == i)
                    curvature += first[t].coefficient * first[t].coefficient * molalities_[species.species];
            }
        }
        trial_[i] -= std::log(ratio) * balance_[i] / curvature;
        moved = true;
    }
    if (!moved) return;
    trial_[0] = u_[0];
    const double before = g_;
    if (evaluate(trial_.data()) && g_ < before) {
        u_.swap(trial_);
        return;
    }
    evaluate(u_.data());
}

LogSolverOutcome LogSpeciationSolver::solve(double tolerance, std::uint64_t iterationLimit) {
    if (!feasible_) {
        std::fill(molalities_.begin(), molalities_.end(), std::numeric_limits<double>::quiet_NaN());
        return {false, 0};
    }
    evaluate(u_.data());
    balanceComponents();
    return iterate(tolerance, iterationLimit);
}

void LogSpeciationSolver::setLogConstants(const std::vector<double>& logConstants) {
    for (ActiveSpecies& species : active_) species.constant = std::exp(kLn10 * logConstants[species.species]);
}

LogSolverOutcome LogSpeciationSolver::resolve(double tolerance, std::uint64_t iterationLimit) {
    unreachable_ = SIZE_MAX;  // new constants may bring a freed total back within reach
    if (!feasible_) return solve(tolerance, iterationLimit);
    if (!evaluate(u_.data())) return {false, 0};
    return iterate(tolerance, iterationLimit);
}

LogSolverOutcome LogSpeciationSolver::iterate(double tolerance, std::uint64_t iterationLimit) {
    tolerance_ = tolerance;
    for (std::uint64_t iteration = 0;; ++iteration) {
        newtonStep();
        if (closes(tolerance)) return {true, iteration};
        // Settled at a vanishing freed total with its row still open: no amount meets the row.
        if (unreachable_ != SIZE_MAX && largestMagnitude(step_) <= tolerance) return {false, iteration};
        if (iteration >= iterationLimit || !lineSearch()) return {false, iteration};
        scaleDownOvershoots();
    }
}

ValueArray LogSpeciationSolver::freeMolalities() const {
    ValueArray x(basisCount_ - 1);
    for (std::size_t i = 0; i < u_.size(); ++i) x[basisOfUnknown_[i] - 1] = std::exp(u_[i]);
    if (!feasible_) {
        for (double& value : x) value = std::numeric_limits<double>::quiet_NaN();
    }
    return x;
}

}  // namespace Brinecast
}  // namespace korvane
