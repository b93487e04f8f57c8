#include <korvane/Brinecast.h>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

namespace bc = korvane::Brinecast;

namespace {

bc::ConcentsWithUnit list(std::vector<bc::NameValue> values, bc::ConcentUnit unit) {
    bc::ConcentsWithUnit concents;
    concents.assign(values, unit);
    return concents;
}

/// The calculation's error as "kind: message", "" when it returns.
std::string failureOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const korvane::UnreacheableException& e) {
        return std::string("unreachable: ") + e.what();
    } catch (const std::logic_error& e) {
        return std::string("std::logic_error: ") + e.what();
    }
    return "";
}

const auto undefinedUnit = static_cast<bc::ConcentUnit>(6);

}  // namespace

TEST(ChargeUtilities, MolarChargeOfElementLists) {
    const std::tuple<std::vector<bc::NameValue>, bc::ConcentUnit, double> cases[] = {  // elements, unit, eq/kgw
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
    for (const auto& [values, unit, expected] : cases) {
        const double charge = bc::getMolarCharge(list(values, unit));
        EXPECT_NEAR(charge, expected, 1e-15) << "first entry " << (values.empty() ? "none" : values[0].name);
        if (expected == 0.0) {
            EXPECT_EQ(charge, 0.0);
        }
    }
    // Without a positive contribution nothing is rounded away.
    EXPECT_EQ(bc::getMolarCharge(list({{"Cl", 1e-20}}, bc::MolPerKgw)), -1e-20);
}

// Name lookups come before the unit check, so an unknown name wins over an unknown unit.
TEST(ChargeUtilities, ErrorsNameTheFirstProblemFound) {
    const auto nameNotFound = [](const char* message) { return std::string("std::logic_error: ") + message; };
    const std::pair<std::function<void()>, std::string> cases[] = {
        {[] { bc::getMolarCharge(list({{"Xx", 1.0}}, bc::Undefined)); }, nameNotFound("Element name not found.")},
        {[] { bc::getMolarCharge(list({{"Na", 1.0}, {"S", 1.0}}, bc::MolPerKgw)); }, nameNotFound("Element name not found.")},
        {[] { bc::getMolarCharge(list({{"Na", 1.0}}, bc::Undefined)); }, "unreachable: Unit is not defined."},
        {[] { bc::getMolarCharge(list({{"Na", 1.0}}, undefinedUnit)); }, "unreachable: Unit is not defined."},
        {[] { bc::getIonAmountToBalanceCharge("Xx", bc::Undefined, 1.0); }, nameNotFound("Element name not found.")},
        {[] { bc::getIonAmountToBalanceCharge("Cl", undefinedUnit, 1.0); }, "unreachable: Unit is not defined."},
        {[] { bc::getLabIonElement("SO4--"); }, nameNotFound("Ion name not found.")},
        {[] { bc::toCountedChargeName("SO4-2"); }, nameNotFound("Spread-Charge ion name not found!")},
    };
    for (const auto& [call, expected] : cases) EXPECT_EQ(failureOf(call), expected);
}

TEST(ChargeUtilities, IonAmountThatBalancesACharge) {
    const std::tuple<const char*, bc::ConcentUnit, double, double> cases[] = {  // element, unit, eq/kgw, in unit
        {"Cl", bc::MolPerKgw, 0.5, 0.5},
        {"Cl", bc::MmolPerKgw, 0.5, 500.0},
        {"Cl", bc::MmolPerL, 0.5, 500.0},
        {"Cl", bc::MgPerL, 0.5, 0.5 * 35.453 * 1000.0},
        {"Cl", bc::MgPerKg, 0.5, 0.5 * 35.453 * 1000.0},
        {"Ca", bc::MolPerKgw, -0.5, 0.25},
        {"S(6)", bc::MgPerL, 0.2, 0.1 * 96.064 * 1000.0},
        {"Na", bc::MolPerKgw, 0.5, -0.5},
    };
    for (const auto& [element, unit, charge, expected] : cases)
        EXPECT_DOUBLE_EQ(bc::getIonAmountToBalanceCharge(element, unit, charge), expected) << element << " in unit " << unit;
    // The amount found balances the charge it was asked for.
    const bc::ConcentsWithUnit brine = list({{"Na", 1.2}, {"Ca", 0.3}, {"Cl", 1.1}}, bc::MgPerL);
    const double charge = bc::getMolarCharge(brine);
    bc::ConcentsWithUnit balanced = brine;
    balanced.push_back({"Cl", bc::getIonAmountToBalanceCharge("Cl", bc::MgPerL, charge)});
    EXPECT_EQ(bc::getMolarCharge(balanced), 0.0);
}

TEST(ChargeUtilities, LabIonAndCountedChargeNames) {
    const std::pair<const char*, const char*> elements[] = {
        {"HCO3-", "C"}, {"SO4-2", "S(6)"}, {"Ca+2", "Ca"}, {"HS-", "S(-2)"}, {"O-2", "O"}, {"Fe+3", "Fe(+3)"}};
    for (const auto& [ion, element] : elements) EXPECT_EQ(bc::getLabIonElement(ion), element);
    EXPECT_EQ(bc::toCountedChargeName("SO4--"), "SO4-2");
    EXPECT_EQ(bc::toCountedChargeName("Ca++"), "Ca+2");
    EXPECT_EQ(bc::toCountedChargeName("HCO3-"), "HCO3-");
}
