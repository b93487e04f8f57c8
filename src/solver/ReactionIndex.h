#pragma once

#include "database/ReactionRecord.h"
#include "solver/PreparedBasis.h"
#include "solver/SpeciationSystem.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace korvane {
namespace Brinecast {

/// The reaction records of a species model made ready, once, for picking the reactions of many
/// calculations: every species name gets a number and every record its stoichiometry as
/// (number, coefficient) terms. `select` picks the records BasisReactionSet picks, in the same
/// order and with the same log K values, charges and coefficients, without copying a record or
/// hashing a name per record. Immutable after construction, so any number of threads may select
/// at once.
class ReactionIndex {
public:
    /// Keeps a reference to `reactions`, which must outlive the index.
    explicit ReactionIndex(const std::vector<ReactionRecord>& reactions);

    /// The species and mass-action data of a speciation on `basisNames` at `temperatureK` (K).
    /// Throws KorvaneError "There are more/less basis info reactions than basis components." as
    /// BasisReactionSet does. `basisNames` must not repeat a name.
    SpeciationSystem select(const std::vector<std::string>& basisNames, double temperatureK) const;

    /// The part of `select` that depends on the basis list alone, for reuse across analyses;
    /// the same failures. Its log K values are set by `setTemperature`.
    PreparedBasis prepare(const std::vector<std::string>& basisNames) const;
    /// The log K values of `basis` at `temperatureK` (K), the same bits as `select` gives;
    /// nothing is recomputed when they are already for that temperature.
    void setTemperature(PreparedBasis& basis, double temperatureK) const;

    std::size_t speciesCount() const { return names_.size(); }
    /// Tells this index apart from every other one built in the process, also one built later
    /// at the same address: prepared bases of one index are no use to another.
    std::uint64_t serial() const { return serial_; }

private:
    static constexpr std::uint32_t kUnknown = UINT32_MAX;

    struct Term {
        std::uint32_t species;
        double coefficient;
    };
    struct Record {
        std::uint32_t firstTerm;
        std::uint32_t termCount;
    };

    std::uint32_t idOf(const std::string& name) const;
    /// The species charge, or the std::logic_error its name gives when it has no readable charge.
    std::int32_t chargeOf(std::uint32_t species) const;

    const std::vector<ReactionRecord>& reactions_;
    std::uint64_t serial_;
    std::unordered_map<std::string, std::uint32_t> ids_;
    std::vector<std::string> names_;
    std::vector<std::int32_t> charges_;
    std::vector<bool> chargeReadable_;
    std::vector<bool> conservesCharge_;  ///< per record
    std::vector<Term> terms_;
    std::vector<Record> records_;
};

}  // namespace Brinecast
}  // namespace korvane
