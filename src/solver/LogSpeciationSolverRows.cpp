// The log-space solver with a measured pH: "H+" held, the charge balance left to a row or only
// reported, and rows that set a component's total in place of its mass balance. Kept apart from
// the free-"H+" path, whose arithmetic `run`'s neighbours rely on bit for bit.
#include "solver/LogSpeciationSolver.h"

#include "tools/CholeskySolver.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

namespace korvane {
namespace Brinecast {

namespace {

constexpr double kLn10 = 2.302585092994045684;
constexpr std::size_t kHydrogen = 1;  // basis index of "H+"
/// Largest factor by which one Newton step changes a freed total: far from the answer the
/// bordered system's linear model of the proton balance is poor.
constexpr double kLargestTotalFactor = 100.0;
/// A freed total that a row keeps pushing below this fraction of its start has no positive value
/// that meets the row.
constexpr double kVanishingTotal = 1e-15;
/// Largest freed total (mol/kgw): beyond the dissolved matter any analysis may hold, a row that
/// asks for more cannot be met.
constexpr double kLargestFreedTotal = 30.0;
/// The freed totals move only once every mass balance is within this fraction of its total: the
/// bordered step predicts the rows from the proton balance, which is far off while the balances
/// are, and the steps of G alone close them from any start.
constexpr double kNearlyBalanced = 0.1;

}  // namespace

void LogSpeciationSolver::fixHydrogen(double logMolality) {
    hydrogenFixed_ = true;
    u_[0] = kLn10 * logMolality;
}

void LogSpeciationSolver::impose(const ImposedRow& row) {
    if (!hydrogenFixed_) throw std::logic_error("An imposed row needs the \"H+\" molality held first.");
    std::uint32_t unknown = 0;
    for (std::size_t i = 1; i < basisOfUnknown_.size(); ++i) {
        if (basisOfUnknown_[i] == row.freedBasis) unknown = static_cast<std::uint32_t>(i);
    }
    if (unknown == 0) {
        throw std::logic_error("Basis " + std::to_string(row.freedBasis) +
                               " has no positive total to start an imposed row from.");
    }
    for (const Row& other : rows_) {
        if (other.unknown == unknown) throw std::logic_error("Two imposed rows free the same total.");
    }
    Row imposed{unknown, row.basisWeights[kHydrogen], std::vector<double>(u_.size(), 0.0),
                std::vector<double>(molalities_.size(), 0.0), row.value, target_[unknown]};
    for (std::size_t i = 1; i < u_.size(); ++i) imposed.unknownWeights[i] = row.basisWeights[basisOfUnknown_[i]];
    // Water carries neither charge nor alkalinity: its weight is not read.
    for (const ActiveSpecies& species : active_) {
        double weight = 0.0;
        const Term* first = terms_.data() + species.firstTerm;
        for (std::uint32_t t = 0; t < species.termCount; ++t)
            weight += first[t].coefficient * row.basisWeights[basisOfUnknown_[first[t].unknown]];
        imposed.speciesWeights[species.species] = weight;
    }
    rows_.push_back(std::move(imposed));
}

void LogSpeciationSolver::derivedTotals(ValueArray& totals) const {
    for (const Row& row : rows_) totals[basisOfUnknown_[row.unknown]] = target_[row.unknown];
}

void LogSpeciationSolver::reducedNewtonStep() {
    const std::size_t n = u_.size();
    step_[0] = 0.0;
    if (n < 2) return;
    const std::size_t m = n - 1;
    reduced_.resize(m, m);
    crossColumn_.assign(m, 0.0);
    for (std::size_t i = 1; i < n; ++i) scale_[i] = 1.0 / std::sqrt(hessian_(i, i));
    for (std::size_t i = 1; i < n; ++i) {
        double* row = reduced_.row(i - 1);
        for (std::size_t j = 1; j <= i; ++j) row[j - 1] = hessian_(i, j) * scale_[i] * scale_[j];
        crossColumn_[i - 1] = hessian_(i, 0) * scale_[i];
    }
    if (!tools::CholeskySolver::factorize(reduced_)) {
        for (std::size_t i = 1; i < n; ++i) step_[i] = -gradient_[i] * scale_[i] * scale_[i];
        return;
    }
    bool nearlyBalanced = true;
    for (std::size_t i = 1; i < n; ++i)
        nearlyBalanced = nearlyBalanced && std::fabs(gradient_[i]) <= kNearlyBalanced * target_[i];
    if (!rows_.empty() && nearlyBalanced) updateFreedTotals(reduced_);
    for (std::size_t i = 1; i < n; ++i) step_[i] = -gradient_[i] * scale_[i];
    tools::CholeskySolver::solve(reduced_, step_.data() + 1);
    for (std::size_t i = 1; i < n; ++i) step_[i] *= scale_[i];
}

void LogSpeciationSolver::updateFreedTotals(const tools::ValueMatrix& factors) {
    // Every row reads w·B(H+) + Σ b_j·T_j = value (B(H+) the proton balance, T_j the totals, which
    // the mass balances equal at the answer), so it depends on u only through B(H+), whose
    // derivative is the Hessian's "H+" column h. With y = H⁻¹h, the Newton step of the bordered
    // system gives the freed totals τ from (D + w·yᵀP)·Δτ = −r + w·yᵀF, F the mass-balance
    // residuals; the step of u then is the step of G at the new totals.
    const std::size_t n = u_.size();
    for (std::size_t i = 0; i + 1 < n; ++i) trial_[i + 1] = crossColumn_[i];
    tools::CholeskySolver::solve(factors, trial_.data() + 1);
    double yF = 0.0;
    for (std::size_t i = 1; i < n; ++i) {
        trial_[i] *= scale_[i];
        yF += trial_[i] * gradient_[i];
    }
    const std::size_t p = rows_.size();
    double schur[2][2] = {{0.0, 0.0}, {0.0, 0.0}};
    double rhs[2] = {0.0, 0.0};
    for (std::size_t r = 0; r < p; ++r) {
        const Row& row = rows_[r];
        double residual = row.hydrogenWeight * balance_[0] - row.value;
        for (std::size_t i = 1; i < n; ++i) residual += row.unknownWeights[i] * target_[i];
        rhs[r] = -residual + row.hydrogenWeight * yF;
        for (std::size_t q = 0; q < p; ++q)
            schur[r][q] = row.unknownWeights[rows_[q].unknown] + row.hydrogenWeight * trial_[rows_[q].unknown];
    }
    double change[2] = {rhs[0] / schur[0][0], 0.0};
    if (p == 2) {
        const double det = schur[0][0] * schur[1][1] - schur[0][1] * schur[1][0];
        change[0] = (rhs[0] * schur[1][1] - schur[0][1] * rhs[1]) / det;
        change[1] = (schur[0][0] * rhs[1] - schur[1][0] * rhs[0]) / det;
    }
    for (std::size_t q = 0; q < p; ++q) moveFreedTotal(rows_[q], change[q]);
}

void LogSpeciationSolver::moveFreedTotal(const Row& row, double change) {
    const std::uint32_t i = row.unknown;
    const double total = target_[i];
    double next = total + change;
    if (!std::isfinite(next) || std::fabs(change) <= tolerance_ * resolution(row)) return;
    if (!(next > total / kLargestTotalFactor)) {
        if (next <= 0.0 && total < kVanishingTotal * row.startTotal) {
            // Held where it is: the balances settle at a vanishing total, and the row is judged
            // there (a carbon-free water meets its own alkalinity).
            unreachable_ = basisOfUnknown_[i];
            return;
        }
        next = total / kLargestTotalFactor;
    } else if (next > total * kLargestTotalFactor) {
        next = total * kLargestTotalFactor;
    }
    if (next > kLargestFreedTotal) {
        if (total >= kLargestFreedTotal) {
            unreachable_ = basisOfUnknown_[i];
            return;
        }
        next = kLargestFreedTotal;
    }
    gradient_[i] -= next - total;
    g_ -= (next - total) * u_[i];
    target_[i] = next;
}

bool LogSpeciationSolver::isFreed(std::size_t unknown) const {
    for (const Row& row : rows_) {
        if (row.unknown == unknown) return true;
    }
    return false;
}

double LogSpeciationSolver::resolution(const Row& row) const {
    double magnitude = 0.0;
    for (std::size_t k = 0; k < molalities_.size(); ++k) magnitude += std::fabs(row.speciesWeights[k]) * molalities_[k];
    return std::max(target_[row.unknown], magnitude / std::fabs(row.unknownWeights[row.unknown]));
}

bool LogSpeciationSolver::rowsClose(double tolerance) const {
    for (const Row& row : rows_) {
        double sum = 0.0;
        double magnitude = 0.0;
        for (std::size_t k = 0; k < molalities_.size(); ++k) {
            sum += row.speciesWeights[k] * molalities_[k];
            magnitude += std::fabs(row.speciesWeights[k]) * molalities_[k];
        }
        if (!std::isfinite(sum) || !(std::fabs(sum - row.value) <= tolerance * magnitude)) return false;
        if (!(std::fabs(gradient_[row.unknown]) <= tolerance * resolution(row))) return false;
    }
    return true;
}

}  // namespace Brinecast
}  // namespace korvane
