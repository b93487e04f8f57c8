#include "brinecast/calculation/SpeciationCheck.h"

#include <gtest/gtest.h>

#include <cmath>

namespace bc = korvane::Brinecast;
using korvane::Brinecast::cli::BasisData;
using korvane::Brinecast::cli::SpeciationCheck;

namespace {

// A sodium chloride brine at pH 7 with an NaCl ion pair (log K -0.7), solved by hand: free Na+
// and Cl- 0.5 mol/kgw each, H+ and OH- 1e-7, so the charge balance closes exactly.
const double kPair = std::pow(10.0, -0.7) * 0.25;

BasisData brine() {
    BasisData b;
    b.basisNames = {"H2O", "H+", "Na+", "Cl-"};
    b.totals = {55.508, 0.0, 0.5 + kPair, 0.5 + kPair};
    b.speciesNames = {"H2O", "H+", "Na+", "Cl-", "OH-", "NaCl"};
    b.charges = {0, 1, 1, -1, -1, 0};
    b.logK = {0, 0, 0, 0, -14, -0.7};
    b.coefficients = {1, 0, 0, 0,  0, 1, 0, 0,  0, 0, 1, 0,
                      0, 0, 0, 1,  1, -1, 0, 0,  0, 0, 1, 1};
    return b;
}

std::vector<bc::NameValue> solved() {
    return {{"Na+", 0.5}, {"NaCl", kPair}, {"Cl-", 0.5}, {"NaCl", kPair}};
}

}  // namespace

TEST(SpeciationCheck, SolvedBrineClosesWithSharesOfEachTotal) {
    const SpeciationCheck::Result r = SpeciationCheck::check(brine(), 7.0, solved());
    EXPECT_TRUE(r.closed()) << r.mismatch;
    ASSERT_EQ(r.components.size(), 2u);
    EXPECT_EQ(r.components[1].basis, "Cl-");
    EXPECT_NEAR(r.components[0].species[0].share, 0.5 / (0.5 + kPair), 1e-15);
    EXPECT_NEAR(r.chargeScale, 1.0 + 2e-7, 1e-12);  // H+ and OH- come from the pH
    EXPECT_LT(r.worstRelativeError(), 1e-12);
}

TEST(SpeciationCheck, ResultsThatDoNotSatisfyTheBalancesAreCaught) {
    struct Case { const char* what; BasisData basis; double pH; std::vector<bc::NameValue> species;
                  bool naClosed, clClosed, chargeClosed; };
    BasisData moreSodium = brine();
    moreSodium.totals[2] *= 1.0 + 1e-4;  // the solver stopped short of the sodium total
    std::vector<bc::NameValue> lessChloride = solved();
    lessChloride[2].value = 0.49;
    const Case cases[] = {
        {"mass balance off by 1e-4", moreSodium, 7.0, solved(), false, true, true},
        {"chloride short", brine(), 7.0, lessChloride, true, false, false},
        // 1e-6 eq/kgw of excess H+ in 1 eq/kgw of ions: small, but not rounding
        {"pH off by one", brine(), 6.0, solved(), true, true, false},
        {"pH not a number", brine(), NAN, solved(), true, true, false},
    };
    for (const Case& c : cases) {
        const SpeciationCheck::Result r = SpeciationCheck::check(c.basis, c.pH, c.species);
        EXPECT_EQ(r.components[0].closed, c.naClosed) << c.what;
        EXPECT_EQ(r.components[1].closed, c.clClosed) << c.what;
        EXPECT_EQ(r.chargeClosed, c.chargeClosed) << c.what;
        EXPECT_FALSE(r.closed()) << c.what;
    }
}

TEST(SpeciationCheck, AResultThatDoesNotMatchTheReactionSetIsAMismatch) {
    BasisData broken = brine();
    broken.charges.pop_back();
    const std::pair<BasisData, std::vector<bc::NameValue>> wrong[] = {
        {brine(), {{"Na+", 0.5}, {"NaCl", kPair}, {"Cl-", 0.5}}},                       // one short
        {brine(), {{"Na+", 0.5}, {"NaCl", kPair}, {"Cl-", 0.5}, {"NaCl", kPair}, {"X", 1}}},  // one more
        {brine(), {{"Na+", 0.5}, {"Cl-", 0.5}, {"Cl-", 0.5}, {"NaCl", kPair}}},         // Cl- under Na+
        {broken, solved()},
    };
    for (const auto& [basis, species] : wrong) {
        const SpeciationCheck::Result r = SpeciationCheck::check(basis, 7.0, species);
        EXPECT_FALSE(r.mismatch.empty());
        EXPECT_FALSE(r.closed());
    }
}
