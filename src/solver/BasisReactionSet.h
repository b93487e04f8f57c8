#pragma once

#include "database/SpeciesModel.h"
#include "tools/ValueArray.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace korvane {
namespace Brinecast {

/// The reactions that take part in one speciation: the master record of every basis species and
/// every record that forms exactly one species outside the basis from basis species only. Each
/// picked record is renamed after the species it forms; the set serves, per species, its name,
/// charge, log K at the calculation temperature and its coefficients on the basis.
class BasisReactionSet {
public:
    /// Picks from `reactions` (model order kept) against `basisNames`. Throws KorvaneError when
    /// the number of master records picked differs from the number of basis names.
    BasisReactionSet(const std::vector<ReactionRecord>& reactions, const std::vector<std::string>& basisNames,
                     double temperatureK);

    /// The species `record` forms against `basisNames`, or nothing when the record does not belong
    /// to a speciation on that basis. `basisNames` must not repeat a name.
    static std::optional<std::string> pickedSpecies(const ReactionData& record,
                                                    const std::vector<std::string>& basisNames);

    /// Runs the picking rule again on every record against `basisNames`, renaming each record and
    /// its species name; the first record that is not picked throws std::logic_error
    /// "Base components are not suitable.". Charges, log K values and coefficients keep the values
    /// of construction.
    void recheckSuitability(const std::vector<std::string>& basisNames);

    double temperature() const { return temperatureK_; }  ///< K
    const std::vector<ReactionRecord>& records() const { return records_; }
    std::size_t speciesCount() const { return records_.size(); }
    /// Number of basis names the coefficients were built for (columns of the matrix).
    std::size_t basisCount() const { return basisCount_; }

    /// One name per record, in record order.
    const std::vector<std::string>& speciesNames() const { return speciesNames_; }
    /// Charge of each species as its name states it.
    const std::vector<std::int32_t>& charges() const { return charges_; }
    /// log10 K of each record at the temperature, per formula unit of the species it forms.
    const ValueArray& logKValues() const { return logKValues_; }

    /// A(j, k): amount of basis species j in one unit of species k (signed as mass action needs).
    double coefficient(std::size_t basis, std::size_t species) const {
        return coefficients_[species * basisCount_ + basis];
    }
    /// The basisCount() coefficients of one species, adjacent in basis order.
    const double* coefficientsOf(std::size_t species) const { return coefficients_.data() + species * basisCount_; }
    /// The whole matrix, species by species: entry (j, k) at k * basisCount() + j.
    const std::vector<double>& coefficients() const { return coefficients_; }

private:
    double temperatureK_;
    std::size_t basisCount_;
    std::vector<ReactionRecord> records_;
    std::vector<std::string> speciesNames_;
    std::vector<std::int32_t> charges_;
    ValueArray logKValues_;
    std::vector<double> coefficients_;
};

}  // namespace Brinecast
}  // namespace korvane
