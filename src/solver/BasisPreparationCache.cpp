#include "solver/BasisPreparationCache.h"

#include "solver/ReactionIndex.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace korvane {
namespace Brinecast {

namespace {

std::size_t hashOf(const std::vector<std::string>& names) {
    const std::hash<std::string> hash;
    std::size_t h = names.size();
    for (const std::string& name : names) h = h * 1000003u ^ hash(name);
    return h;
}

}  // namespace

BasisPreparationCache::BasisPreparationCache(std::size_t capacity) : capacity_(std::max<std::size_t>(capacity, 1)) {
    entries_.reserve(capacity_);
}

BasisPreparationCache& BasisPreparationCache::ofThisThread() {
    thread_local BasisPreparationCache cache;
    return cache;
}

BasisPreparationCache::Entry* BasisPreparationCache::find(std::uint64_t indexSerial, std::size_t hash,
                                                          const std::vector<std::string>& basisNames) {
    for (Entry& entry : entries_) {
        if (entry.hash == hash && entry.indexSerial == indexSerial && entry.basisNames == basisNames) return &entry;
    }
    return nullptr;
}

BasisPreparationCache::Entry& BasisPreparationCache::makeRoom() {
    if (entries_.size() < capacity_) {
        entries_.emplace_back();
        return entries_.back();
    }
    return *std::min_element(entries_.begin(), entries_.end(),
                             [](const Entry& a, const Entry& b) { return a.lastUse < b.lastUse; });
}

const SpeciationSystem& BasisPreparationCache::system(const ReactionIndex& index,
                                                      const std::vector<std::string>& basisNames,
                                                      double temperatureK) {
    const std::size_t hash = hashOf(basisNames);
    Entry* entry = find(index.serial(), hash, basisNames);
    if (!entry) {
        PreparedBasis prepared = index.prepare(basisNames);  // a refused list throws before taking a place
        ++preparations_;
        entry = &makeRoom();
        entry->indexSerial = 0;  // matches no index until it is whole
        entry->basisNames = basisNames;
        entry->basis = std::move(prepared);
        entry->hash = hash;
        entry->indexSerial = index.serial();
    }
    entry->lastUse = ++clock_;
    index.setTemperature(entry->basis, temperatureK);
    return entry->basis.system;
}

}  // namespace Brinecast
}  // namespace korvane
