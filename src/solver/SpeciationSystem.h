#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace korvane {
namespace Brinecast {

/// The mass-action data of one speciation in plain arrays: the species a basis picks, in the
/// order of the reaction records, with the log K values, charges and species-by-basis
/// coefficients that BasisReactionSet gives for the same basis and temperature.
struct SpeciationSystem {
    std::size_t basisCount = 0;
    std::vector<const std::string*> speciesNames;  ///< one per species; owned by the reaction index
    std::vector<double> logK;                      ///< log10 K per formula unit of each species
    std::vector<std::uint32_t> records;            ///< the reaction record that forms each species
    std::vector<std::int32_t> charges;             ///< charge of each species as its name states it
    std::vector<std::int32_t> basisCharges;        ///< charge of each basis species, in basis order
    /// Per basis name, the species its own record forms ("H2O" and "H+" included), or −1.
    std::vector<std::int32_t> masterSpecies;
    /// A(j, k) at k * basisCount + j: basis species j in one unit of species k.
    std::vector<double> coefficients;
    /// The first species whose reaction does not conserve charge, or null when all do.
    const std::string* chargeNotConserved = nullptr;

    std::size_t speciesCount() const { return logK.size(); }
    double coefficient(std::size_t basis, std::size_t species) const {
        return coefficients[species * basisCount + basis];
    }
    const double* coefficientsOf(std::size_t species) const { return coefficients.data() + species * basisCount; }
};

}  // namespace Brinecast
}  // namespace korvane
