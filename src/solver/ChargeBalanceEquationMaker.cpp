#include "solver/ChargeBalanceEquationMaker.h"

#include "database/SpeciesModel.h"

#include <cmath>
#include <stdexcept>
#include <string>
#include <utility>

namespace korvane {
namespace Brinecast {

namespace {
constexpr double gramsPerKilogram = 1000.0;
}

ChargeBalanceEquationMaker::ChargeBalanceEquationMaker(const BasisReactionSet& reactions,
                                                       std::vector<std::string> basisNames, ValueArray totals,
                                                       const SpeciesModel& model)
    : basisNames_(std::move(basisNames)),
      totals_(std::move(totals)),
      basisCount_(basisNames_.size()),
      speciesCount_(reactions.speciesCount()) {
    if (basisCount_ < 2 || reactions.basisCount() != basisCount_)
        throw std::invalid_argument("The speciation equations need \"H2O\" and \"H+\" first and the basis of their "
                                    "reaction set: got " + std::to_string(basisCount_) + " basis names for a set built on " +
                                    std::to_string(reactions.basisCount()) + ".");
    const double waterMolecularWeight = model.elementTable().molecularWeight("H2O");  // g/mol
    waterActivityFactor_ = waterMolecularWeight / gramsPerKilogram;
    waterAmount_ = gramsPerKilogram / waterMolecularWeight;
    waterLogActivity_ = std::log10(waterAmount_ * waterActivityFactor_);

    const ValueArray& logK = reactions.logKValues();
    logK_.assign(logK.begin(), logK.end());
    charges_.assign(reactions.charges().begin(), reactions.charges().end());
    coefficients_ = reactions.coefficients();

    indexNonZeroCoefficients();

    logActivities_.assign(basisCount_, 0.0);
    previousUnknowns_.assign(basisCount_ - 1, 0.0);
    changed_.assign(basisCount_, 1);
    molalities_.assign(speciesCount_, 0.0);
}

void ChargeBalanceEquationMaker::indexNonZeroCoefficients() {
    speciesTermStart_.push_back(0);
    for (std::size_t k = 0; k < speciesCount_; ++k) {
        for (std::size_t j = 0; j < basisCount_; ++j) {
            const double a = coefficients_[k * basisCount_ + j];
            if (a == 0.0) continue;
            speciesTermBasis_.push_back(static_cast<std::uint32_t>(j));
            speciesTermCoefficient_.push_back(a);
        }
        speciesTermStart_.push_back(static_cast<std::uint32_t>(speciesTermBasis_.size()));
    }
    balanceTermStart_.push_back(0);
    for (std::size_t j = 2; j < basisCount_; ++j) {
        for (std::size_t k = 0; k < speciesCount_; ++k) {
            const double a = coefficients_[k * basisCount_ + j];
            if (a == 0.0) continue;
            balanceTermSpecies_.push_back(static_cast<std::uint32_t>(k));
            balanceTermCoefficient_.push_back(a);
        }
        balanceTermStart_.push_back(static_cast<std::uint32_t>(balanceTermSpecies_.size()));
    }
}

bool ChargeBalanceEquationMaker::computeMolalitiesDense() const {
    bool finite = true;
    for (std::size_t k = 0; k < speciesCount_; ++k) {
        const double* a = coefficients_.data() + k * basisCount_;
        double sum = 0.0;
        for (std::size_t j = 0; j < basisCount_; ++j) sum += a[j] * logActivities_[j];
        molalities_[k] = std::pow(10.0, logK_[k] + sum);
        finite = finite && std::isfinite(molalities_[k]);
    }
    return finite;
}

bool ChargeBalanceEquationMaker::computeMolalities() const {
    for (double la : logActivities_) {
        if (!std::isfinite(la)) {
            molalitiesKnown_ = false;
            return computeMolalitiesDense();
        }
    }
    // Every logarithm is finite, so the skipped zero terms would add 0 * finite = 0 and the sums
    // are the same bits as the dense ones. A species none of whose logarithms changed since the
    // molalities were last computed keeps its molality.
    bool finite = true;
    for (std::size_t k = 0; k < speciesCount_; ++k) {
        const std::uint32_t first = speciesTermStart_[k], last = speciesTermStart_[k + 1];
        bool stale = !molalitiesKnown_;
        for (std::uint32_t t = first; t < last; ++t) stale = stale || changed_[speciesTermBasis_[t]];
        if (stale) {
            double sum = 0.0;
            for (std::uint32_t t = first; t < last; ++t) sum += speciesTermCoefficient_[t] * logActivities_[speciesTermBasis_[t]];
            molalities_[k] = std::pow(10.0, logK_[k] + sum);
        }
        finite = finite && std::isfinite(molalities_[k]);
    }
    molalitiesKnown_ = true;
    return finite;
}

void ChargeBalanceEquationMaker::massAndChargeBalances(bool molalitiesFinite, double* residuals) const {
    const double* m = molalities_.data();
    double charge = 0.0;
    if (molalitiesFinite) {
        for (std::size_t j = 2; j < basisCount_; ++j) {
            double sum = 0.0;
            for (std::uint32_t t = balanceTermStart_[j - 2]; t < balanceTermStart_[j - 1]; ++t)
                sum += balanceTermCoefficient_[t] * m[balanceTermSpecies_[t]];
            residuals[j - 2] = sum - totals_[j];
        }
        for (std::size_t k = 0; k < speciesCount_; ++k) {
            if (charges_[k] != 0.0) charge += charges_[k] * m[k];
        }
    } else {
        for (std::size_t j = 2; j < basisCount_; ++j) {
            double sum = 0.0;
            for (std::size_t k = 0; k < speciesCount_; ++k) sum += coefficients_[k * basisCount_ + j] * m[k];
            residuals[j - 2] = sum - totals_[j];
        }
        for (std::size_t k = 0; k < speciesCount_; ++k) charge += charges_[k] * m[k];
    }
    residuals[basisCount_ - 2] = charge;
}

void ChargeBalanceEquationMaker::evaluate(const ValueArray& x, ValueArray& residuals) const {
    const std::size_t n = basisCount_ - 1;
    // Activities are ideal: water's is fixed, every solute's activity is its molality. A forward-
    // difference Jacobian moves one unknown per call, so only the logarithms of unknowns that
    // differ from the previous call's are taken again (log10 of the same value is the same bits).
    changed_[0] = !unknownsKnown_;
    logActivities_[0] = waterLogActivity_;
    for (std::size_t i = 0; i < n; ++i) {
        const bool moved = !unknownsKnown_ || !(x[i] == previousUnknowns_[i]);
        changed_[i + 1] = moved;
        if (!moved) continue;
        previousUnknowns_[i] = x[i];
        logActivities_[i + 1] = std::log10(x[i]);
    }
    unknownsKnown_ = true;
    const bool finite = computeMolalities();
    residuals.resize(n);
    massAndChargeBalances(finite, residuals.data());
}

ValueArray ChargeBalanceEquationMaker::operator()(const ValueArray& x) const {
    ValueArray residuals;
    evaluate(x, residuals);
    return residuals;
}

ValueArray ChargeBalanceEquationMaker::speciesValues(const ValueArray& values) const {
    logActivities_[0] = std::log10(values[0] * waterActivityFactor_);
    for (std::size_t j = 1; j < basisCount_; ++j) logActivities_[j] = std::log10(values[j]);
    unknownsKnown_ = false;  // these logarithms belong to no evaluation's unknowns
    molalitiesKnown_ = false;
    computeMolalities();
    ValueArray molalities(speciesCount_);
    for (std::size_t k = 0; k < speciesCount_; ++k) molalities[k] = molalities_[k];
    return molalities;
}

double ChargeBalanceEquationMaker::chargeSum(const ValueArray& molalities) const {
    double sum = 0.0;
    for (std::size_t k = 0; k < speciesCount_; ++k) sum += charges_[k] * molalities[k];
    return sum;
}

}  // namespace Brinecast
}  // namespace korvane
