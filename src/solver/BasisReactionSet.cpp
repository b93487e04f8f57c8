#include "solver/BasisReactionSet.h"

#include "database/EquilibriumConstants.h"
#include "interface/ChargeName.h"

#include <korvane/KorvaneError.h>

#include <algorithm>
#include <stdexcept>

namespace korvane {
namespace Brinecast {

namespace {

bool isBasisName(const std::string& name, const std::vector<std::string>& basisNames) {
    return std::find(basisNames.begin(), basisNames.end(), name) != basisNames.end();
}

/// Coefficient of `species` in the reaction, 0 when the reaction does not involve it.
double stoichCoefficient(const ReactionData& record, const std::string& species) {
    auto it = record.stoich.find(species);
    return it == record.stoich.end() ? 0.0 : it->second;
}

bool isMasterRecord(const ReactionData& record) { return record.stoich.size() == 1; }

}  // namespace

std::optional<std::string> BasisReactionSet::pickedSpecies(const ReactionData& record,
                                                           const std::vector<std::string>& basisNames) {
    std::size_t found = 0;
    for (const std::string& name : basisNames) found += record.stoich.count(name);

    if (isMasterRecord(record)) {
        if (found != 1) return std::nullopt;
        return record.stoich.begin()->first;
    }
    if (record.stoich.size() != found + 1) return std::nullopt;
    // Exactly one entry lies outside the basis: the species this record forms.
    for (const auto& entry : record.stoich) {
        if (!isBasisName(entry.first, basisNames)) return entry.first;
    }
    return std::nullopt;  // only reachable when basisNames repeats a name
}

BasisReactionSet::BasisReactionSet(const std::vector<ReactionRecord>& reactions,
                                   const std::vector<std::string>& basisNames, double temperatureK)
    : temperatureK_(temperatureK), basisCount_(basisNames.size()) {
    std::size_t masters = 0;
    for (const ReactionRecord& reaction : reactions) {
        std::optional<std::string> species = pickedSpecies(reaction.data, basisNames);
        if (!species) continue;
        records_.push_back(reaction);
        records_.back().name = std::move(*species);
        if (isMasterRecord(reaction.data)) ++masters;
    }
    if (masters != basisNames.size())
        throw KorvaneError("There are more/less basis info reactions than basis components.");

    speciesNames_.reserve(records_.size());
    charges_.reserve(records_.size());
    for (const ReactionRecord& record : records_) {
        speciesNames_.push_back(record.name);
        charges_.push_back(parseCharge(record.name));
    }
    logKValues_ = Brinecast::logKValues(temperatureK, records_);

    // Mass action in terms of the basis: a formed species k is -cj/c0 of each basis species j
    // (c0 its own coefficient); a master record stands for its basis species as it is written.
    coefficients_.assign(records_.size() * basisCount_, 0.0);
    for (std::size_t k = 0; k < records_.size(); ++k) {
        const ReactionData& data = records_[k].data;
        double* row = coefficients_.data() + k * basisCount_;
        if (isMasterRecord(data)) {
            for (std::size_t j = 0; j < basisCount_; ++j) row[j] = stoichCoefficient(data, basisNames[j]);
            continue;
        }
        const double own = data.stoich.at(records_[k].name);
        for (std::size_t j = 0; j < basisCount_; ++j) row[j] = -stoichCoefficient(data, basisNames[j]) / own;
    }
}

void BasisReactionSet::recheckSuitability(const std::vector<std::string>& basisNames) {
    for (std::size_t k = 0; k < records_.size(); ++k) {
        std::optional<std::string> species = pickedSpecies(records_[k].data, basisNames);
        if (!species) throw std::logic_error("Base components are not suitable.");
        records_[k].name = *species;
        speciesNames_[k] = std::move(*species);
    }
}

}  // namespace Brinecast
}  // namespace korvane
