#pragma once

#include <string>
#include <vector>

namespace korvane::Brinecast::cli {

/// What a result is checked against: one calculation's basis components with their totals, and
/// the species of the library's basis reaction set with charges, log K values and coefficients.
struct BasisData {
    /// "H2O", "H+", then the element and gas basis species, in the library's order.
    std::vector<std::string> basisNames;
    /// Total of each basis component, mol/kgw, aligned with `basisNames`.
    std::vector<double> totals;
    std::vector<std::string> speciesNames;
    std::vector<int> charges;
    /// log10 K of each species' formation reaction at the calculation temperature.
    std::vector<double> logK;
    /// Species-major: coefficients[k * basisNames.size() + j] is species k's coefficient on
    /// basis component j.
    std::vector<double> coefficients;

    double coefficient(std::size_t species, std::size_t basis) const {
        return coefficients[species * basisNames.size() + basis];
    }
};

}  // namespace korvane::Brinecast::cli
