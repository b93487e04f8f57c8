#include <korvane/Brinecast.h>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace bc = korvane::Brinecast;

namespace {

bc::ConcentsWithUnit list(std::vector<bc::NameValue> values, bc::ConcentUnit unit) {
    bc::ConcentsWithUnit concents;
    concents.assign(values, unit);
    return concents;
}

template <typename Error>
void expectError(const std::function<void()>& call, const char* message, const std::string& label) {
    try {
        call();
        ADD_FAILURE() << "no error for " << label;
    } catch (const Error& e) {
        EXPECT_STREQ(e.what(), message) << label;
    }
}

const auto undefinedUnit = static_cast<bc::ConcentUnit>(6);

}  // namespace

TEST(ChargeUtilities, MolarChargeOfElementLists) {
    struct Case {
        std::vector<bc::NameValue> values;
        bc::ConcentUnit unit;
        double expected;  // eq/kgw
    };
    const Case cases[] = {
        {{{"Na", 1.0}, {"Cl", 1.0}}, bc::MolPerKgw, 0.0},
        {{{"Na", 1.0}}, bc::MolPerKgw, 1.0},
        {{{"Cl", 1.0}}, bc::MolPerKgw, -1.0},
        {{{"C", 1.0}}, bc::MolPerKgw, -1.0},  // carbon counts as bicarbonate
        {{{"Ca", 2.0}, {"S(6)", 1.0}, {"Cl", 1.5}}, bc::MolPerKgw, 0.5},
        {{{"Ca", 2.0}, {"Cl", 1.0}}, bc::MmolPerKgw, 0.003},
        {{{"Ca", 2.0}, {"Cl", 1.0}}, bc::MmolPerL, 0.003},  // no density: taken per kg of water
        {{{"Ca", 40.08}}, bc::MgPerL, 0.002},
        {{{"Ca", 40.08}}, bc::MgPerKg, 0.002},
        {{{"C", 61.0191}}, bc::MgPerL, -0.001},  // mass of HCO3-, not of carbon
        {{}, bc::Undefined, 0.0},
        // Balanced to rounding relative to the largest positive contribution gives exactly zero.
        {{{"Na", 0.1}, {"Na", 0.2}, {"Cl", 0.3}}, bc::MolPerKgw, 0.0},
    };
    for (const Case& c : cases) {
        const double charge = bc::getMolarCharge(list(c.values, c.unit));
        EXPECT_NEAR(charge, c.expected, 1e-15) << "first entry " << (c.values.empty() ? "none" : c.values[0].name);
        if (c.expected == 0.0) {
            EXPECT_EQ(charge, 0.0);
        }
    }
    // Without a positive contribution nothing is rounded away.
    EXPECT_EQ(bc::getMolarCharge(list({{"Cl", 1e-20}}, bc::MolPerKgw)), -1e-20);
}

TEST(ChargeUtilities, MolarChargeErrorsComeAfterTheNameLookup) {
    expectError<std::logic_error>([] { bc::getMolarCharge(list({{"Xx", 1.0}}, bc::Undefined)); },
                                  "Element name not found.", "unknown element, no unit");
    expectError<std::logic_error>([] { bc::getMolarCharge(list({{"Na", 1.0}, {"S", 1.0}}, bc::MolPerKgw)); },
                                  "Element name not found.", "unknown second element");
    for (const bc::ConcentUnit unit : {bc::Undefined, undefinedUnit}) {
        expectError<korvane::UnreacheableException>([unit] { bc::getMolarCharge(list({{"Na", 1.0}}, unit)); },
                                                     "Unit is not defined.", "unit " + std::to_string(unit));
    }
}

TEST(ChargeUtilities, IonAmountThatBalancesACharge) {
    struct Case {
        const char* element;
        bc::ConcentUnit unit;
        double charge;    // eq/kgw
        double expected;  // in `unit`
    };
    const Case cases[] = {
        {"Cl", bc::MolPerKgw, 0.5, 0.5},
        {"Cl", bc::MmolPerKgw, 0.5, 500.0},
        {"Cl", bc::MmolPerL, 0.5, 500.0},
        {"Cl", bc::MgPerL, 0.5, 0.5 * 35.453 * 1000.0},
        {"Cl", bc::MgPerKg, 0.5, 0.5 * 35.453 * 1000.0},
        {"Ca", bc::MolPerKgw, -0.5, 0.25},
        {"S(6)", bc::MgPerL, 0.2, 0.1 * 96.064 * 1000.0},
        {"Na", bc::MolPerKgw, 0.5, -0.5},
    };
    for (const Case& c : cases) {
        EXPECT_DOUBLE_EQ(bc::getIonAmountToBalanceCharge(c.element, c.unit, c.charge), c.expected)
            << c.element << " in unit " << c.unit;
    }
    // The amount found balances the charge it was asked for.
    const bc::ConcentsWithUnit brine = list({{"Na", 1.2}, {"Ca", 0.3}, {"Cl", 1.1}}, bc::MgPerL);
    const double charge = bc::getMolarCharge(brine);
    bc::ConcentsWithUnit balanced = brine;
    balanced.push_back({"Cl", bc::getIonAmountToBalanceCharge("Cl", bc::MgPerL, charge)});
    EXPECT_EQ(bc::getMolarCharge(balanced), 0.0);
    expectError<std::logic_error>([] { bc::getIonAmountToBalanceCharge("Xx", bc::Undefined, 1.0); },
                                  "Element name not found.", "unknown element");
    expectError<korvane::UnreacheableException>([] { bc::getIonAmountToBalanceCharge("Cl", undefinedUnit, 1.0); },
                                                 "Unit is not defined.", "unit 6");
}

TEST(ChargeUtilities, LabIonAndCountedChargeNames) {
    const std::pair<const char*, const char*> elements[] = {
        {"HCO3-", "C"}, {"SO4-2", "S(6)"}, {"Ca+2", "Ca"}, {"HS-", "S(-2)"}, {"O-2", "O"}, {"Fe+3", "Fe(+3)"}};
    for (const auto& [ion, element] : elements) EXPECT_EQ(bc::getLabIonElement(ion), element);
    EXPECT_EQ(bc::toCountedChargeName("SO4--"), "SO4-2");
    EXPECT_EQ(bc::toCountedChargeName("Ca++"), "Ca+2");
    EXPECT_EQ(bc::toCountedChargeName("HCO3-"), "HCO3-");
    expectError<std::logic_error>([] { bc::getLabIonElement("SO4--"); }, "Ion name not found.", "SO4--");
    expectError<std::logic_error>([] { bc::toCountedChargeName("SO4-2"); }, "Spread-Charge ion name not found!", "SO4-2");
}
