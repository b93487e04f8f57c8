#include "brinecast/calculation/ChargeBalance.h"
#include "brinecast/readers/InputError.h"

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
    struct Case { std::vector<bc::NameValue> elements; bc::ConcentUnit unit; double net, percent; };
    const Case cases[] = {
        {{{"Na", 1.0}, {"Cl", 1.0}}, bc::MolPerKgw, 0.0, 0.0},
        {{{"Ca", 1.0}, {"Cl", 1.0}}, bc::MolPerKgw, 1.0, 100.0 / 3.0},
        {{{"Na", 22.9898}, {"Cl", 2 * 35.453}}, bc::MgPerL, -1e-3, -100.0 / 3.0},
        {{{"Na", 10.0}, {"Cl", 8.0}, {"S(6)", 1.0}}, bc::MmolPerKgw, 0.0, 0.0},
        // 1 mmol/L Na2CO3 reported as carbonate: balanced, although the library counts C as HCO3-.
        {{{"Na", 2.0}, {"C", 1.0}}, bc::MmolPerL, 0.0, 0.0},
    };
    for (const Case& c : cases) {
        Analysis a = analysis(c.elements, c.unit);
        if (c.unit == bc::MmolPerL) a.carbonateCarbon = 1.0;
        const ChargeBalance b = ChargeBalance::of(a);
        EXPECT_NEAR(b.net(), c.net, 1e-15);
        EXPECT_NEAR(b.errorPercent(), c.percent, 1e-12);
    }
    EXPECT_EQ(ChargeBalance::of(analysis({{"Na", 1.0}}, bc::MgPerL)).unitName(), "eq/L");
}

TEST(ChargeBalance, BalancingIonCancelsTheNetCharge) {
    for (const char* ion : {"Cl", "Br"}) {  // Br is absent, so it is appended
        Analysis a = analysis({{"Na", 1000.0}, {"Cl", 1000.0}}, bc::MgPerL);
        const ChargeBalance before = ChargeBalance::of(a);
        EXPECT_TRUE(before.large());
        ChargeBalance::add(a, ion, before.amountToCancel(ion));
        EXPECT_EQ(a.elements.back().name, ion);
        EXPECT_NEAR(ChargeBalance::of(a).errorPercent(), 0.0, 1e-9) << ion;
        // Cancelling an excess of cations with a cation would need a negative amount.
        EXPECT_THROW(ChargeBalance::add(a, "K", before.amountToCancel("K")), InputError);
    }
}
