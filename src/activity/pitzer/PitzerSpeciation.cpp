#include "activity/pitzer/PitzerSpeciation.h"

#include "activity/PressureCorrection.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>

namespace korvane {
namespace Brinecast {

namespace {

constexpr double kLn10 = 2.302585092994045684;
/// Largest change of one log10 activity in a Newton step: keeps the first steps from a poor
/// start inside the range where the linearisation means something.
constexpr double kLargestStep = 1.0;
constexpr double kStartLogHydrogen = -7.0;
/// Activity updates before giving up; the reference brines need at most about 30.
constexpr int kActivityUpdateLimit = 300;
/// Activity updates at a held pH before they are damped: a fixed point that has not settled by
/// then is oscillating.
constexpr int kUndampedUpdates = 50;
/// Largest total (mol/kgw) an imposed row may set: beyond the dissolved matter any brine may hold,
/// a row that asks for more cannot be met, and the molalities would overflow before Newton gave up.
constexpr double kLargestFreedTotal = 30.0;
/// A freed total that has fallen below this fraction of its start when Newton gives up is one
/// that no positive amount could set.
constexpr double kVanishingTotal = 1e-15;

/// Solves the n×n system `a` x = `b` in place (b becomes x) by elimination with partial pivoting;
/// false when it is singular.
bool solveLinear(std::vector<double>& a, std::vector<double>& b, std::size_t n) {
    for (std::size_t c = 0; c < n; ++c) {
        std::size_t pivot = c;
        for (std::size_t r = c + 1; r < n; ++r) {
            if (std::fabs(a[r * n + c]) > std::fabs(a[pivot * n + c])) pivot = r;
        }
        if (!(std::fabs(a[pivot * n + c]) > 0.0)) return false;
        if (pivot != c) {
            for (std::size_t k = 0; k < n; ++k) std::swap(a[c * n + k], a[pivot * n + k]);
            std::swap(b[c], b[pivot]);
        }
        for (std::size_t r = c + 1; r < n; ++r) {
            const double f = a[r * n + c] / a[c * n + c];
            if (f == 0.0) continue;
            for (std::size_t k = c; k < n; ++k) a[r * n + k] -= f * a[c * n + k];
            b[r] -= f * b[c];
        }
    }
    for (std::size_t c = n; c-- > 0;) {
        double sum = b[c];
        for (std::size_t k = c + 1; k < n; ++k) sum -= a[c * n + k] * b[k];
        b[c] = sum / a[c * n + c];
    }
    return true;
}

}  // namespace

PitzerSpeciation::PitzerSpeciation(const PitzerDatabase& database, const std::vector<PitzerComponent>& components,
                                   double temperatureK, double pressurePa, bool macInnes)
    : database_(database), water_(WaterProperties::at(temperatureK, pressurePa)) {
    // Unknown 0 is H+, then one per component; a formed species belongs to the brine when every
    // master it is made of does.
    std::vector<std::int32_t> unknownOf(database.species().size(), -1);
    unknownOf[static_cast<std::size_t>(database.find("H+"))] = 0;
    species_.push_back(database.find("H+"));
    totals_.push_back(0.0);
    for (const PitzerComponent& component : components) {
        unknownOf[static_cast<std::size_t>(component.master)] = static_cast<std::int32_t>(species_.size());
        species_.push_back(component.master);
        totals_.push_back(component.total);
    }
    unknowns_ = species_.size();
    for (std::size_t s = 0; s < database.species().size(); ++s) {
        const PitzerSpecies& record = database.species()[s];
        if (record.master) continue;
        const bool present = std::all_of(record.contents.begin(), record.contents.end(), [&](const auto& c) {
            return unknownOf[static_cast<std::size_t>(c.first)] >= 0;
        });
        if (present) species_.push_back(static_cast<std::int32_t>(s));
    }
    const std::int32_t chloride = database.find("Cl-");
    if (macInnes && unknownOf[static_cast<std::size_t>(chloride)] < 0) {
        phantom_ = static_cast<std::int32_t>(species_.size());
        species_.push_back(chloride);
    }
    const std::size_t n = species_.size();
    contents_.assign(n * unknowns_, 0.0);
    for (std::size_t s = 0; s < n; ++s) {
        const PitzerSpecies& record = database.species()[static_cast<std::size_t>(species_[s])];
        charges_.push_back(record.charge);
        waterCounts_.push_back(record.waterCount);
        baseLogK_.push_back(record.master ? 0.0 : record.logK.at(temperatureK));
        volumes_.emplace_back(record.volumeParameters, record.charge, water_);
        if (static_cast<std::int32_t>(s) == phantom_) continue;
        if (s < unknowns_) contents_[s * unknowns_ + s] = 1.0;
        for (const auto& c : record.contents)
            contents_[s * unknowns_ + static_cast<std::size_t>(unknownOf[static_cast<std::size_t>(c.first)])] = c.second;
    }
    // Row 0 weighs the charges, row b the counts of component b, as long as nothing is imposed.
    weights_ = contents_;
    for (std::size_t s = 0; s < n; ++s) weights_[s * unknowns_] = charges_[s];
    targets_ = totals_;
    byMagnitude_.assign(unknowns_, 0);
    byMagnitude_[0] = 1;
    magnitudes_.assign(unknowns_, 0.0);
    logK_ = baseLogK_;
    logGamma_.assign(n, 0.0);
    molalities_.assign(n, 0.0);
    logActivity_.assign(unknowns_, kStartLogHydrogen);
    for (std::size_t b = 1; b < unknowns_; ++b) logActivity_[b] = std::log10(totals_[b]);
    activity_ = std::make_unique<PitzerActivity>(database, species_, water_, macInnes);
    jacobian_.assign(unknowns_ * unknowns_, 0.0);
    residuals_.assign(unknowns_, 0.0);
    held_.assign(unknowns_, 0);
}

void PitzerSpeciation::updateMolalities() {
    for (std::size_t s = 0; s < species_.size(); ++s) {
        if (static_cast<std::int32_t>(s) == phantom_) { molalities_[s] = 0.0; continue; }
        double logA = logK_[s] + waterCounts_[s] * logWaterActivity_;
        for (std::size_t b = 0; b < unknowns_; ++b) logA += contents_[s * unknowns_ + b] * logActivity_[b];
        molalities_[s] = std::pow(10.0, logA - logGamma_[s]);
    }
}

void PitzerSpeciation::assemble() {
    const std::size_t n = unknowns_;
    std::fill(jacobian_.begin(), jacobian_.end(), 0.0);
    std::fill(residuals_.begin(), residuals_.end(), 0.0);
    std::fill(magnitudes_.begin(), magnitudes_.end(), 0.0);
    // The derivative of a molality by a log10 activity is ln 10 × count × m.
    for (std::size_t s = 0; s < species_.size(); ++s) {
        const double m = molalities_[s];
        if (m == 0.0) continue;
        const double* c = &contents_[s * n];
        const double* w = &weights_[s * n];
        for (std::size_t r = 0; r < n; ++r) residuals_[r] += w[r] * m;
        for (std::size_t r = 0; r < n; ++r) {
            if (byMagnitude_[r]) magnitudes_[r] += std::fabs(w[r]) * m;
        }
        for (std::size_t b = 0; b < n; ++b) {
            if (c[b] == 0.0) continue;
            const double d = kLn10 * c[b] * m;
            for (std::size_t r = 0; r < n; ++r) jacobian_[r * n + b] += w[r] * d;
        }
    }
    // Row 0's target is always zero: it is the charge balance or, with H+ held, no row at all.
    for (std::size_t r = 1; r < n; ++r) residuals_[r] -= targets_[r];
    if (!hydrogenFixed_) return;
    // H+ held: row and column 0 become the identity, so that its step is exactly zero.
    for (std::size_t k = 0; k < n; ++k) {
        jacobian_[k] = 0.0;
        jacobian_[k * n] = 0.0;
    }
    jacobian_[0] = 1.0;
    residuals_[0] = 0.0;
}

double PitzerSpeciation::contentOf(std::size_t unknown) const {
    double sum = 0.0;
    for (std::size_t s = 0; s < species_.size(); ++s) sum += contents_[s * unknowns_ + unknown] * molalities_[s];
    return sum;
}

bool PitzerSpeciation::freedTotalOutOfRange() {
    for (std::size_t b : freed_) {
        if (contentOf(b) <= kLargestFreedTotal) continue;
        // Unreachable only when the row still asks for more; an overshoot is a failed Newton.
        double value = 0.0, slope = 0.0;
        for (std::size_t s = 0; s < species_.size(); ++s) {
            value += weights_[s * unknowns_ + b] * molalities_[s];
            slope += weights_[s * unknowns_ + b] * contents_[s * unknowns_ + b] * molalities_[s];
        }
        if ((targets_[b] - value) * slope > 0.0) unreachable_ = b;
        return true;
    }
    return false;
}

void PitzerSpeciation::fixPH(double pH) {
    hydrogenFixed_ = true;
    logActivity_[0] = -pH;
}

void PitzerSpeciation::impose(const std::vector<double>& unknownWeights, double value, std::size_t freedUnknown) {
    if (!hydrogenFixed_) throw std::logic_error("An imposed row needs the pH held first.");
    if (freedUnknown == 0 || freedUnknown >= unknowns_ || unknownWeights.size() != unknowns_ ||
        std::any_of(pending_.begin(), pending_.end(), [&](const PendingRow& row) { return row.freedUnknown == freedUnknown; })) {
        throw std::logic_error("An imposed row must free one component's total, once: unknown " +
                               std::to_string(freedUnknown) + " of " + std::to_string(unknowns_) + ".");
    }
    PendingRow row{freedUnknown, value, std::vector<double>(species_.size(), 0.0)};
    for (std::size_t s = 0; s < species_.size(); ++s) {
        for (std::size_t b = 0; b < unknowns_; ++b) row.speciesWeights[s] += contents_[s * unknowns_ + b] * unknownWeights[b];
    }
    pending_.push_back(std::move(row));
}

void PitzerSpeciation::applyPendingRows() {
    for (const PendingRow& row : pending_) {
        for (std::size_t s = 0; s < species_.size(); ++s) weights_[s * unknowns_ + row.freedUnknown] = row.speciesWeights[s];
        targets_[row.freedUnknown] = row.value;
        byMagnitude_[row.freedUnknown] = 1;
        freed_.push_back(row.freedUnknown);
        freedStart_.push_back(totals_[row.freedUnknown]);
    }
    pending_.clear();
}

std::size_t PitzerSpeciation::newtonSteps(double tolerance, std::uint64_t limit, bool& converged) {
    const std::size_t n = unknowns_;
    double lastStep = std::numeric_limits<double>::infinity();
    double lastResidual = std::numeric_limits<double>::infinity();
    converged = false;
    std::fill(held_.begin(), held_.end(), 0);
    for (std::uint64_t step = 0;; ++step) {
        updateMolalities();
        if (!freed_.empty() && freedTotalOutOfRange()) return step;
        assemble();
        // Rows scaled to relative residuals, so that a trace component counts as much as NaCl;
        // the charge balance and imposed rows by Σ|w|m, since their targets may be zero.
        for (std::size_t r = 0; r < n; ++r) {
            const double scale = !byMagnitude_[r] ? targets_[r] : magnitudes_[r] > 0.0 ? magnitudes_[r] : 1.0;
            for (std::size_t b = 0; b < n; ++b) jacobian_[r * n + b] /= scale;
            residuals_[r] = -residuals_[r] / scale;
        }
        const double heldResidual = setAsideHeldRows();
        double residual = 0.0;
        for (double r : residuals_) residual = std::max(residual, std::fabs(r));
        // In an unbuffered brine H+ is fixed only through the charge balance, whose rounding
        // (1e-16 of Σ|z|m) can be 1e-9 of m(H+): once the balances close, a step that no longer
        // halves the residual is moving rounding about, and the solution is as good as it gets.
        if (residual <= tolerance && (kLn10 * lastStep <= tolerance || residual > 0.5 * lastResidual)) {
            converged = heldResidual <= tolerance;
            return step;
        }
        lastResidual = residual;
        if (step >= limit || !solveLinear(jacobian_, residuals_, n)) return step;
        if (!freed_.empty()) holdVanishingTotals();
        double largest = 0.0;
        for (double d : residuals_) largest = std::max(largest, std::fabs(d));
        if (!std::isfinite(largest)) return step;
        const double shrink = largest > kLargestStep ? kLargestStep / largest : 1.0;
        for (std::size_t b = hydrogenFixed_ ? 1 : 0; b < n; ++b) logActivity_[b] += shrink * residuals_[b];
        lastStep = shrink * largest;
    }
}

double PitzerSpeciation::setAsideHeldRows() {
    double heldResidual = 0.0;
    for (std::size_t b : freed_) {
        if (!held_[b]) continue;
        heldResidual = std::max(heldResidual, std::fabs(residuals_[b]));
        for (std::size_t k = 0; k < unknowns_; ++k) jacobian_[b * unknowns_ + k] = k == b ? 1.0 : 0.0;
        residuals_[b] = 0.0;
    }
    return heldResidual;
}

void PitzerSpeciation::holdVanishingTotals() {
    for (std::size_t f = 0; f < freed_.size(); ++f) {
        const std::size_t b = freed_[f];
        if (held_[b] || (residuals_[b] < 0.0 && contentOf(b) < kVanishingTotal * freedStart_[f])) {
            held_[b] = 1;
            residuals_[b] = 0.0;
        }
    }
}

std::vector<double> PitzerSpeciation::volumesAt(double ionicStrength) const {
    std::vector<double> volumes(species_.size());
    const double root = std::sqrt(ionicStrength);
    for (std::size_t s = 0; s < species_.size(); ++s) volumes[s] = volumes_[s].at(ionicStrength, root);
    return volumes;
}

void PitzerSpeciation::updateActivity() {
    state_ = activity_->evaluate(molalities_.data(), logGamma_.data());
    logWaterActivity_ = state_.logWaterActivity;
    const double factor = PressureCorrection::logKPerVolume(water_);  // log10 K per cm3/mol
    if (factor == 0.0) return;
    const std::vector<double> volumes = volumesAt(state_.ionicStrength);
    const double waterVolume = PressureCorrection::waterVolume(water_);
    for (std::size_t s = unknowns_; s < species_.size(); ++s) {
        if (static_cast<std::int32_t>(s) == phantom_) continue;
        double change = volumes[s] - waterCounts_[s] * waterVolume;  // formation ΔV, cm3/mol
        for (std::size_t b = 1; b < unknowns_; ++b) change -= contents_[s * unknowns_ + b] * volumes[b];
        logK_[s] = baseLogK_[s] + factor * change;
    }
}

bool PitzerSpeciation::settle(double tolerance, std::uint64_t iterationLimit, std::uint64_t& iterations) {
    bool balanced = false;
    iterations += newtonSteps(tolerance, iterationLimit, balanced);
    // A freed total held at a vanishing amount may yet be met once γ has followed it down.
    for (int update = 0; update < kActivityUpdateLimit && (balanced || anyHeld()); ++update) {
        const std::vector<double> previousGamma = logGamma_;
        const std::vector<double> previousLogK = logK_;
        const double previousWater = logWaterActivity_;
        updateActivity();
        if (hydrogenFixed_ && update >= kUndampedUpdates) {
            // At a held pH an OH- or H+ that carries much of the ionic strength feeds its own γ
            // back through m = a/γ, which no charge balance pins; halving the update contracts.
            for (std::size_t s = 0; s < species_.size(); ++s)
                logGamma_[s] = 0.5 * (logGamma_[s] + previousGamma[s]);
            logWaterActivity_ = 0.5 * (logWaterActivity_ + previousWater);
        }
        double change = std::fabs(logWaterActivity_ - previousWater);
        for (std::size_t s = 0; s < species_.size(); ++s) {
            change = std::max(change, std::fabs(logGamma_[s] - previousGamma[s]));
            change = std::max(change, std::fabs(logK_[s] - previousLogK[s]));
        }
        iterations += newtonSteps(tolerance, iterationLimit, balanced);
        if (change <= 10.0 * tolerance && (balanced || anyHeld())) return balanced;
    }
    return false;
}

PitzerSolution PitzerSpeciation::solve(double tolerance, std::uint64_t iterationLimit) {
    PitzerSolution solution;
    solution.converged = settle(tolerance, iterationLimit, solution.iterations);
    if (!pending_.empty()) {
        // The imposed rows take over from a brine settled at the starting totals: from the
        // totals alone, a held acid pH puts tens of mol/kgw of carbon into CO2, and ideal
        // activities can put a measured alkalinity out of reach of any positive carbon.
        applyPendingRows();
        solution.converged = settle(tolerance, iterationLimit, solution.iterations);
    }
    updateMolalities();
    if (!solution.converged && unreachable_ == SIZE_MAX) {
        for (std::size_t f = 0; f < freed_.size(); ++f) {
            if (!(contentOf(freed_[f]) >= kVanishingTotal * freedStart_[f])) unreachable_ = freed_[f];
        }
    }
    solution.unreachable = unreachable_;
    solution.species = species_;
    solution.molalities = molalities_;
    solution.logGammas = logGamma_;
    solution.logK = logK_;
    solution.contents = contents_;
    solution.unknowns = unknowns_;
    solution.pH = -logActivity_[0];
    solution.ionicStrength = state_.ionicStrength;
    solution.logWaterActivity = logWaterActivity_;
    solution.osmoticCoefficient = state_.osmoticCoefficient;
    computeMinerals(solution);
    return solution;
}

PitzerSolution PitzerSpeciation::layout() const {
    PitzerSolution solution;
    solution.species = species_;
    solution.contents = contents_;
    solution.unknowns = unknowns_;
    solution.logK = baseLogK_;
    return solution;
}

void PitzerSpeciation::computeMinerals(PitzerSolution& solution) const {
    const double factor = PressureCorrection::logKPerVolume(water_);
    const std::vector<double> volumes = volumesAt(state_.ionicStrength);
    const double waterVolume = PressureCorrection::waterVolume(water_);
    for (const PitzerMineral& mineral : database_.minerals()) {
        double logIAP = mineral.waterCoefficient * logWaterActivity_;
        double change = mineral.waterCoefficient * waterVolume - mineral.solidVolumeCm3PerMol;
        bool formable = true;
        for (const auto& product : mineral.products) {
            const auto it = std::find(species_.begin(), species_.end(), product.first);
            const std::size_t s = static_cast<std::size_t>(it - species_.begin());
            if (it == species_.end() || static_cast<std::int32_t>(s) == phantom_ || !(molalities_[s] > 0.0)) {
                formable = false;
                break;
            }
            logIAP += product.second * (std::log10(molalities_[s]) + logGamma_[s]);
            change += product.second * volumes[s];
        }
        if (!formable) continue;
        const double logK = mineral.logK.at(water_.temperatureK) + factor * change;
        solution.minerals.push_back({mineral.name, logIAP - logK, logK, logIAP});
    }
}

}  // namespace Brinecast
}  // namespace korvane
