#pragma once

#include "solver/BasisReactionSet.h"
#include "tools/ValueArray.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace korvane {
namespace Brinecast {

class SpeciesModel;

/// The speciation equations of one calculation with ideal activities: mass action gives every
/// species' molality from the free basis molalities, the mass balances of basis 2..N-1 tie them
/// to the totals (mol/kgw) and the charge balance closes the system in place of "H+".
///
/// Unknowns x (N-1 entries): x(i) is the free molality of basis name i+1, so x(0) is "H+".
/// Residuals (N-1 entries): mass balances of basis names 2..N-1 in order, charge balance last.
///
/// The residual operation is the hot path of the whole calculation (the forward-difference
/// Jacobian calls it N times per Newton iteration): everything fixed for the calculation is
/// prepared here once, an evaluation allocates nothing beyond its output array, and logarithms
/// and molalities that the previous evaluation already computed from the same values are kept
/// (the same bits as computing them again).
/// It writes into scratch arrays of the object, so one maker serves one thread at a time.
class ChargeBalanceEquationMaker {
public:
    /// Reads "H2O"'s molecular weight from the model's element table ("Molecular Weight not
    /// found!"); `totals` holds one amount (mol/kgw) per basis name.
    ChargeBalanceEquationMaker(const BasisReactionSet& reactions, std::vector<std::string> basisNames,
                               ValueArray totals, const SpeciesModel& model);

    /// Residuals at the free molalities `x` (N-1 of them); `residuals` is resized to N-1 entries.
    void evaluate(const ValueArray& x, ValueArray& residuals) const;
    /// The same residuals in a new array.
    ValueArray operator()(const ValueArray& x) const;

    /// Molality (mol/kgw) of every species of the basis reaction set, in its order, from the full
    /// value vector: entry 0 the moles of water per kg of water, then the free molalities.
    ValueArray speciesValues(const ValueArray& values) const;
    /// Net charge of the species, sum of charge(k) * m(k), equivalents per kg of water.
    double chargeSum(const ValueArray& molalities) const;

    const std::vector<std::string>& basisNames() const { return basisNames_; }
    const ValueArray& totals() const { return totals_; }  ///< mol/kgw per basis name
    std::size_t unknownCount() const { return basisNames_.size() - 1; }
    std::size_t speciesCount() const { return speciesCount_; }
    /// Moles of water in one kg of water, 1000 / MW("H2O").
    double waterAmount() const { return waterAmount_; }

private:
    void indexNonZeroCoefficients();
    /// Fills molalities_ from logActivities_, recomputing only species whose logarithms changed;
    /// false when a molality is not finite.
    bool computeMolalities() const;
    /// Every species by the plain sums over all basis names (any logarithm not finite).
    bool computeMolalitiesDense() const;
    void massAndChargeBalances(bool molalitiesFinite, double* residuals) const;

    std::vector<std::string> basisNames_;
    ValueArray totals_;
    std::size_t basisCount_;
    std::size_t speciesCount_;
    double waterActivityFactor_;  ///< MW("H2O") / 1000, kg/mol
    double waterAmount_;          ///< 1000 / MW("H2O"), mol per kg of water
    double waterLogActivity_;     ///< log10 of the water activity, fixed for the calculation

    std::vector<double> logK_;          ///< per species
    std::vector<double> charges_;       ///< per species, as doubles for the charge balance
    std::vector<double> coefficients_;  ///< A(j, k) at k * basisCount_ + j

    // The matrix without its zero entries, species by species and basis column by basis column
    // (balances of basis 2..N-1). Summing only these is exact as long as every logarithm and
    // molality is finite; otherwise the dense sums are used, so that 0 * inf still gives NaN.
    std::vector<std::uint32_t> speciesTermStart_, speciesTermBasis_;
    std::vector<double> speciesTermCoefficient_;
    std::vector<std::uint32_t> balanceTermStart_, balanceTermSpecies_;
    std::vector<double> balanceTermCoefficient_;

    mutable std::vector<double> logActivities_;  ///< scratch: log10 activity per basis name
    mutable std::vector<double> molalities_;     ///< molality per species of the last evaluation
    // The unknowns behind logActivities_ (when unknownsKnown_), which logarithms the current
    // evaluation changed, and whether molalities_ belong to the logarithms before that change.
    mutable std::vector<double> previousUnknowns_;
    mutable std::vector<unsigned char> changed_;
    mutable bool unknownsKnown_ = false;
    mutable bool molalitiesKnown_ = false;
};

}  // namespace Brinecast
}  // namespace korvane
