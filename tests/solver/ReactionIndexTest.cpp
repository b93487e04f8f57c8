#include "solver/ReactionIndex.h"

#include "database/SpeciesModel.h"
#include "solver/BasisReactionSet.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <random>
#include <string>
#include <vector>

using korvane::Brinecast::BasisReactionSet;
using korvane::Brinecast::ReactionIndex;
using korvane::Brinecast::SpeciationSystem;
using korvane::Brinecast::SpeciesModel;
using Names = std::vector<std::string>;

namespace {

const SpeciesModel& embeddedModel() {
    static const SpeciesModel model;
    return model;
}

/// Every basis species an analysis can bring, in no particular order.
const Names solutes{"Na+", "Cl-", "Ca+2", "Mg+2", "K+", "Sr+2", "Ba+2", "Fe+2", "Zn+2", "Br-", "CO3-2", "SO4-2", "HS-"};

/// Equal as stored, so that -0.0 and 0.0 count as different.
bool sameBits(double a, double b) { return a == b && std::signbit(a) == std::signbit(b); }

}  // namespace

// The robust path must solve exactly the equations the specified path solves.
TEST(ReactionIndex, SelectsWhatTheBasisReactionSetPicksToTheBit) {
    const ReactionIndex index(embeddedModel().reactions);
    std::mt19937 random(8);
    for (int trial = 0; trial < 200; ++trial) {
        Names basis{"H2O", "H+"};
        Names pool = solutes;
        std::shuffle(pool.begin(), pool.end(), random);
        basis.insert(basis.end(), pool.begin(), pool.begin() + trial % (pool.size() + 1));
        const double temperatureK = 273.15 + trial;

        const BasisReactionSet set(embeddedModel().reactions, basis, temperatureK);
        const SpeciationSystem system = index.select(basis, temperatureK);
        ASSERT_EQ(system.speciesCount(), set.speciesCount());
        ASSERT_EQ(system.basisCount, basis.size());
        EXPECT_EQ(system.chargeNotConserved, nullptr);
        for (std::size_t k = 0; k < set.speciesCount(); ++k) {
            EXPECT_EQ(*system.speciesNames[k], set.speciesNames()[k]);
            EXPECT_EQ(system.charges[k], set.charges()[k]);
            EXPECT_TRUE(sameBits(system.logK[k], set.logKValues()[k])) << set.speciesNames()[k];
            for (std::size_t j = 0; j < basis.size(); ++j)
                EXPECT_TRUE(sameBits(system.coefficient(j, k), set.coefficient(j, k))) << set.speciesNames()[k] << " " << basis[j];
        }
    }
}
