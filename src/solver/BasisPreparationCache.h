#pragma once

#include "solver/PreparedBasis.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace korvane {
namespace Brinecast {

class ReactionIndex;

/// The prepared bases of the latest distinct basis lists, so that a batch of analyses on a few
/// lists picks its reactions once per list instead of once per analysis. Bounded: when full, the
/// list used longest ago makes room. Not shared between threads: each thread keeps its own
/// (`ofThisThread`), so finding a list takes no lock.
class BasisPreparationCache {
public:
    static constexpr std::size_t kDefaultCapacity = 64;

    explicit BasisPreparationCache(std::size_t capacity = kDefaultCapacity);

    /// The cache of the calling thread, alive as long as the thread.
    static BasisPreparationCache& ofThisThread();

    /// The prepared basis of `basisNames` picked by `index`, with log K values at `temperatureK`
    /// (K). Valid until the next call on this cache. A list the index refuses throws what
    /// `ReactionIndex::prepare` throws and is not kept.
    const SpeciationSystem& system(const ReactionIndex& index, const std::vector<std::string>& basisNames,
                                   double temperatureK);

    std::size_t size() const { return entries_.size(); }
    std::size_t capacity() const { return capacity_; }
    /// Lists prepared since construction: the misses.
    std::uint64_t preparations() const { return preparations_; }

private:
    struct Entry {
        std::uint64_t indexSerial;
        std::size_t hash;
        std::vector<std::string> basisNames;
        PreparedBasis basis;
        std::uint64_t lastUse;
    };

    Entry* find(std::uint64_t indexSerial, std::size_t hash, const std::vector<std::string>& basisNames);
    Entry& makeRoom();

    std::size_t capacity_;
    std::vector<Entry> entries_;
    std::uint64_t clock_ = 0;
    std::uint64_t preparations_ = 0;
};

}  // namespace Brinecast
}  // namespace korvane
