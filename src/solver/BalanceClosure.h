#pragma once

#include "tools/ValueArray.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace korvane {
namespace Brinecast {

/// How well species molalities meet the mass and charge balances of their speciation, measured
/// from the molalities alone so that any solver's result can be judged the same way.
struct BalanceClosure {
    /// Σ over components of |Σ A(j, k)·m_k − T_j| (mol/kgw) plus |Σ z_k·m_k| (eq/kgw): the sum of
    /// |residual| of the speciation equations.
    double residualNorm = 0.0;
    /// Largest |Σ A(j, k)·m_k − T_j| / T_j; a component with a zero total counts 0 when its
    /// species sum to exactly 0 and infinity otherwise. NaN when any molality is NaN.
    double massBalanceError = 0.0;
    /// |Σ z_k·m_k| / Σ |z_k|·m_k.
    double chargeImbalance = 0.0;

    /// Measures `molalities` (mol/kgw, one per species) against `totals` (mol/kgw per basis
    /// name; basis names 2..N−1 have mass balances) with A(j, k) at k·N + j and charges z_k.
    static BalanceClosure measure(std::size_t basisCount, const ValueArray& totals,
                                  const std::vector<double>& coefficients, const std::vector<std::int32_t>& charges,
                                  const double* molalities);
};

}  // namespace Brinecast
}  // namespace korvane
