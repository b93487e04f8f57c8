#include "brinecast/ChargeBalance.h"
#include "brinecast/InputError.h"

#include <gtest/gtest.h>

namespace bc = korvane::Brinecast;
using korvane::Brinecast::cli::Analysis;
using korvane::Brinecast::cli::ChargeBalance;
using korvane::Brinecast::cli::InputError;

namespace {

Analysis analysis(std::vector<bc::NameValue> elements, bc::ConcentUnit unit) {
    Analysis a;
    a.source = "lab.json";
    a.unit = unit;
    a.elements = std::move(elements);
    return a;
}

}  // namespace

TEST(ChargeBalance, ErrorIsNetOverTotalCharge) {
    struct Case { std::vector<bc::NameValue> elements; bc::ConcentUnit unit; double net; double percent; };
    const Case cases[] = {
        {{{"Na", 1.0}, {"Cl", 1.0}}, bc::MolPerKgw, 0.0, 0.0},
        {{{"Ca", 1.0}, {"Cl", 1.0}}, bc::MolPerKgw, 1.0, 100.0 / 3.0},
        {{{"Na", 22.9898}, {"Cl", 2 * 35.453}}, bc::MgPerL, -1e-3, -100.0 / 3.0},
        {{{"Na", 10.0}, {"Cl", 8.0}, {"S(6)", 1.0}}, bc::MmolPerKgw, 0.0, 0.0},
    };
    for (const Case& c : cases) {
        const ChargeBalance b = ChargeBalance::of(analysis(c.elements, c.unit));
        EXPECT_NEAR(b.net(), c.net, 1e-15);
        EXPECT_NEAR(b.errorPercent(), c.percent, 1e-12);
    }
}

TEST(ChargeBalance, CarbonateCarriesTwoCharges) {
    // 1 mmol/L Na2CO3 reported as carbonate: balanced, although the library counts C as HCO3-.
    Analysis a = analysis({{"Na", 2.0}, {"C", 1.0}}, bc::MmolPerL);
    a.carbonateCarbon = 1.0;
    const ChargeBalance b = ChargeBalance::of(a);
    EXPECT_NEAR(b.net(), 0.0, 1e-18);
    EXPECT_NEAR(b.total(), 4e-3, 1e-18);
    EXPECT_EQ(b.unitName(), "eq/L");
}

TEST(ChargeBalance, BalancingIonCancelsTheNetCharge) {
    Analysis a = analysis({{"Na", 1000.0}, {"Cl", 1000.0}}, bc::MgPerL);
    const ChargeBalance before = ChargeBalance::of(a);
    EXPECT_TRUE(before.large());
    ChargeBalance::add(a, "Cl", before.amountToCancel("Cl"));
    EXPECT_NEAR(ChargeBalance::of(a).errorPercent(), 0.0, 1e-9);

    Analysis b = analysis({{"Na", 1000.0}, {"Cl", 1000.0}}, bc::MgPerL);
    ChargeBalance::add(b, "Br", before.amountToCancel("Br"));  // an absent anion is appended
    EXPECT_EQ(b.elements.back().name, "Br");
    EXPECT_NEAR(ChargeBalance::of(b).errorPercent(), 0.0, 1e-9);

    // Cancelling an excess of cations with a cation would need a negative amount.
    Analysis c = analysis({{"Na", 1000.0}, {"Cl", 1000.0}}, bc::MgPerL);
    EXPECT_THROW(ChargeBalance::add(c, "K", before.amountToCancel("K")), InputError);
    EXPECT_THROW(ChargeBalance::add(c, "Na", -2000.0), InputError);
}
