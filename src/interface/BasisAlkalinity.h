#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace korvane {
namespace Brinecast {

class ElementTable;

/// Alkalinity (eq/mol) of each basis species as the element table states it: +2 for CO3-2, +1 for
/// HS-, −1 for H+, 0 for water and the rest. A species' alkalinity is then Σ_j A(j, k)·alk_j, the
/// convention in which OH- counts +1, HCO3- +1 and CO2 0.
std::vector<double> basisAlkalinities(const std::vector<std::string>& basisNames, const ElementTable& table);

/// Σ_k (Σ_j A(j, k)·alk_j)·m_k (eq/kgw) over `speciesCount` species, A(j, k) at k·N + j.
double alkalinityOf(const std::vector<double>& basisAlkalinities, const std::vector<double>& coefficients,
                    const double* molalities, std::size_t speciesCount);

}  // namespace Brinecast
}  // namespace korvane
