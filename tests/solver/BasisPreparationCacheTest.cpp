#include "solver/BasisPreparationCache.h"

#include "database/SpeciesModel.h"
#include "solver/ReactionIndex.h"

#include <korvane/KorvaneError.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

using korvane::Brinecast::BasisPreparationCache;
using korvane::Brinecast::ReactionIndex;
using korvane::Brinecast::SpeciationSystem;
using korvane::Brinecast::SpeciesModel;
using Names = std::vector<std::string>;

namespace {

const SpeciesModel& embeddedModel() {
    static const SpeciesModel model;
    return model;
}

bool sameBits(const std::vector<double>& a, const std::vector<double>& b) {
    return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0);
}

void expectSameSystem(const SpeciationSystem& cached, const SpeciationSystem& fresh, const std::string& what) {
    EXPECT_EQ(cached.basisCount, fresh.basisCount) << what;
    EXPECT_EQ(cached.speciesNames, fresh.speciesNames) << what;  // the same names of the same index
    EXPECT_EQ(cached.charges, fresh.charges) << what;
    EXPECT_EQ(cached.basisCharges, fresh.basisCharges) << what;
    EXPECT_TRUE(sameBits(cached.logK, fresh.logK)) << what;
    EXPECT_TRUE(sameBits(cached.coefficients, fresh.coefficients)) << what;
}

/// Lists that differ in their solutes and in their order: order is part of a basis list.
std::vector<Names> basisLists() {
    const Names solutes{"Na+", "Cl-", "Ca+2", "Mg+2", "K+", "SO4-2", "CO3-2"};
    std::vector<Names> lists;
    for (std::size_t first = 0; first < solutes.size(); ++first) {
        for (std::size_t count = 0; count < 3; ++count) {
            Names basis{"H2O", "H+"};
            for (std::size_t s = 0; s <= count; ++s) basis.push_back(solutes[(first + s) % solutes.size()]);
            lists.push_back(basis);
            std::reverse(basis.begin() + 2, basis.end());  // the same solutes, another basis list
            if (count > 0) lists.push_back(basis);
        }
    }
    return lists;
}

}  // namespace

// Lists come back after being pushed out, at other temperatures, from two indexes of the same
// data: each time the cache must hand back what the index picks afresh, and never hold more
// lists than its capacity.
TEST(BasisPreparationCache, HandsBackWhatTheIndexPicksWhateverItHolds) {
    const ReactionIndex index(embeddedModel().reactions);
    const ReactionIndex other(embeddedModel().reactions);
    BasisPreparationCache cache(4);
    const std::vector<Names> lists = basisLists();
    for (int pass = 0; pass < 3; ++pass) {
        for (std::size_t i = 0; i < lists.size(); ++i) {
            const ReactionIndex& by = i % 2 == 0 ? index : other;
            // Each list is asked for twice: the second time it is held, at another temperature.
            for (const double temperatureK : {298.15 + 5.0 * ((i + pass) % 3), 350.0 + pass}) {
                expectSameSystem(cache.system(by, lists[i], temperatureK), by.select(lists[i], temperatureK),
                                 "list " + std::to_string(i) + " pass " + std::to_string(pass) + " at " +
                                     std::to_string(temperatureK) + " K");
            }
            EXPECT_LE(cache.size(), cache.capacity());
        }
    }
    // A list held is not prepared again, whatever its temperature; one pushed out is.
    const auto prepared = cache.preparations();
    for (int again = 0; again < 3; ++again) cache.system(index, lists[0], 300.0 + again);
    EXPECT_EQ(cache.preparations(), prepared + 1);
}

TEST(BasisPreparationCache, ARefusedListThrowsEveryTimeAndTakesNoPlace) {
    const ReactionIndex index(embeddedModel().reactions);
    BasisPreparationCache cache(4);
    const Names noMasterRecord{"H2O", "H+", "Fe+3", "Cl-"};
    for (int attempt = 0; attempt < 2; ++attempt) {
        EXPECT_THROW(cache.system(index, noMasterRecord, 298.15), korvane::KorvaneError);
        EXPECT_EQ(cache.size(), 0u);
    }
}
