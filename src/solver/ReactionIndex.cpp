#include "solver/ReactionIndex.h"

#include "database/EquilibriumConstants.h"
#include "interface/ChargeName.h"

#include <korvane/KorvaneError.h>

#include <atomic>
#include <cmath>
#include <stdexcept>
#include <utility>

namespace korvane {
namespace Brinecast {

namespace {
constexpr double kChargeSlack = 1e-9;  // reaction coefficients may be fractions

std::uint64_t nextSerial() {
    static std::atomic<std::uint64_t> serials{0};
    return serials.fetch_add(1, std::memory_order_relaxed) + 1;
}

}  // namespace

ReactionIndex::ReactionIndex(const std::vector<ReactionRecord>& reactions)
    : reactions_(reactions), serial_(nextSerial()) {
    records_.reserve(reactions.size());
    for (const ReactionRecord& reaction : reactions) {
        const auto first = static_cast<std::uint32_t>(terms_.size());
        for (const auto& entry : reaction.data.stoich) {
            auto found = ids_.find(entry.first);
            if (found == ids_.end()) {
                found = ids_.emplace(entry.first, static_cast<std::uint32_t>(names_.size())).first;
                names_.push_back(entry.first);
            }
            terms_.push_back({found->second, entry.second});
        }
        records_.push_back({first, static_cast<std::uint32_t>(terms_.size()) - first});
    }
    charges_.assign(names_.size(), 0);
    chargeReadable_.assign(names_.size(), true);
    for (std::size_t s = 0; s < names_.size(); ++s) {
        try {
            charges_[s] = parseCharge(names_[s]);
        } catch (const std::logic_error&) {
            chargeReadable_[s] = false;  // thrown again if a calculation picks this species
        }
    }
    conservesCharge_.assign(records_.size(), true);
    for (std::size_t r = 0; r < records_.size(); ++r) {
        if (records_[r].termCount < 2) continue;  // a master record only names its species
        double net = 0.0;
        bool readable = true;
        for (std::uint32_t t = 0; t < records_[r].termCount; ++t) {
            const Term& term = terms_[records_[r].firstTerm + t];
            net += term.coefficient * charges_[term.species];
            readable = readable && chargeReadable_[term.species];
        }
        conservesCharge_[r] = readable && std::fabs(net) <= kChargeSlack;
    }
}

std::uint32_t ReactionIndex::idOf(const std::string& name) const {
    const auto found = ids_.find(name);
    return found == ids_.end() ? kUnknown : found->second;
}

std::int32_t ReactionIndex::chargeOf(std::uint32_t species) const {
    if (!chargeReadable_[species]) return parseCharge(names_[species]);  // throws its own message
    return charges_[species];
}

SpeciationSystem ReactionIndex::select(const std::vector<std::string>& basisNames, double temperatureK) const {
    PreparedBasis basis = prepare(basisNames);
    setTemperature(basis, temperatureK);
    return std::move(basis.system);
}

void ReactionIndex::setTemperature(PreparedBasis& basis, double temperatureK) const {
    // Compared bit for bit: a NaN temperature is never held, so it is always recomputed.
    if (basis.temperatureK == temperatureK) return;
    std::vector<double>& logK = basis.system.logK;
    logK.resize(basis.records.size());
    for (std::size_t k = 0; k < basis.records.size(); ++k)
        logK[k] = logKAt(reactions_[basis.records[k]], temperatureK) / basis.ownCoefficients[k];
    basis.temperatureK = temperatureK;
}

PreparedBasis ReactionIndex::prepare(const std::vector<std::string>& basisNames) const {
    const std::size_t basisCount = basisNames.size();
    // Position of each species in the basis, or -1.
    std::vector<std::int32_t> basisPosition(names_.size(), -1);
    for (std::size_t j = 0; j < basisCount; ++j) {
        const std::uint32_t id = idOf(basisNames[j]);
        if (id != kUnknown) basisPosition[id] = static_cast<std::int32_t>(j);
    }

    PreparedBasis prepared;
    SpeciationSystem& system = prepared.system;
    system.basisCount = basisCount;
    std::vector<std::uint32_t>& picked = prepared.records;
    std::vector<std::uint32_t> formed;
    picked.reserve(records_.size());
    formed.reserve(records_.size());
    std::size_t masters = 0;
    for (std::size_t r = 0; r < records_.size(); ++r) {
        const Term* terms = terms_.data() + records_[r].firstTerm;
        const std::uint32_t count = records_[r].termCount;
        std::uint32_t found = 0;
        std::uint32_t outside = kUnknown;
        for (std::uint32_t t = 0; t < count; ++t) {
            if (basisPosition[terms[t].species] >= 0) ++found;
            else outside = terms[t].species;
        }
        if (count == 1) {
            if (found != 1) continue;
            ++masters;
            outside = terms[0].species;
        } else if (count != found + 1) {
            continue;
        }
        picked.push_back(static_cast<std::uint32_t>(r));
        formed.push_back(outside);
    }
    if (masters != basisCount)
        throw KorvaneError("There are more/less basis info reactions than basis components.");

    const std::size_t speciesCount = picked.size();
    system.speciesNames.reserve(speciesCount);
    system.charges.resize(speciesCount);
    prepared.ownCoefficients.resize(speciesCount);
    system.records.assign(picked.begin(), picked.end());
    system.masterSpecies.assign(basisCount, -1);
    // Absent basis species are written as -0.0 / c0 for formed species, as the reaction set does.
    system.coefficients.assign(speciesCount * basisCount, 0.0);
    for (std::size_t k = 0; k < speciesCount; ++k) {
        system.speciesNames.push_back(&names_[formed[k]]);
        system.charges[k] = chargeOf(formed[k]);
        if (!conservesCharge_[picked[k]] && !system.chargeNotConserved) system.chargeNotConserved = &names_[formed[k]];
    }
    for (std::size_t k = 0; k < speciesCount; ++k) {
        const Term* terms = terms_.data() + records_[picked[k]].firstTerm;
        const std::uint32_t count = records_[picked[k]].termCount;
        double own = 0.0;
        for (std::uint32_t t = 0; t < count; ++t) {
            if (terms[t].species == formed[k]) own = terms[t].coefficient;
        }
        prepared.ownCoefficients[k] = own;
        double* row = system.coefficients.data() + k * basisCount;
        if (count == 1) {
            row[basisPosition[formed[k]]] = own;
            system.masterSpecies[static_cast<std::size_t>(basisPosition[formed[k]])] = static_cast<std::int32_t>(k);
            continue;
        }
        const double absent = -0.0 / own;
        for (std::size_t j = 0; j < basisCount; ++j) row[j] = absent;
        for (std::uint32_t t = 0; t < count; ++t) {
            const std::int32_t j = basisPosition[terms[t].species];
            if (j >= 0) row[j] = -terms[t].coefficient / own;
        }
    }
    system.basisCharges.resize(basisCount);
    for (std::size_t j = 0; j < basisCount; ++j) {
        const std::uint32_t id = idOf(basisNames[j]);
        system.basisCharges[j] = id == kUnknown ? parseCharge(basisNames[j]) : chargeOf(id);
    }
    return prepared;
}

}  // namespace Brinecast
}  // namespace korvane
