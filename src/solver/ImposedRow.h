#pragma once

#include <cstddef>
#include <vector>

namespace korvane {
namespace Brinecast {

/// A measured sum over the species that takes the place of one component's mass balance: the
/// component's total becomes an unknown and this row fixes it instead. The row reads
/// Σ_k c_k·m_k = value with c_k = Σ_j A(j, k)·b_j, so that the charge balance (b_j the charges of
/// the basis species) and the alkalinity (b_j their alkalinities) are written alike.
struct ImposedRow {
    std::vector<double> basisWeights;  ///< b_j per basis name, water and "H+" included
    double value = 0.0;                ///< eq/kgw the weighted sum must reach
    std::size_t freedBasis = 0;        ///< basis index whose total the row sets; a component with a positive total
};

}  // namespace Brinecast
}  // namespace korvane
