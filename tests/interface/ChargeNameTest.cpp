#include "interface/ChargeName.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

using korvane::Brinecast::parseCharge;

TEST(ChargeName, ChargeIsReadFromTheLastTwoCharacters) {
    const std::pair<const char*, int> cases[] = {
        {"Na+", 1},    {"e-", -1},     {"H2O", 0},   {"CO2", 0},  {"Al+3", 3},     {"Ca+2", 2},
        {"SO4-2", -2}, {"PO4-3", -3},  {"H+", 1},    {"O-2", -2}, {"Fe(OH)3-", -1},
        // Known limits: a spread charge counts once, a second digit is not read at all.
        {"SO4--", -1}, {"X+12", 0},    {"Y-10", 0},
        // Names shorter than two characters: a lone sign is still a charge.
        {"-", -1},     {"+", 1},       {"A", 0},     {"", 0},
    };
    for (const auto& [name, charge] : cases) EXPECT_EQ(parseCharge(name), charge) << '"' << name << '"';
}

TEST(ChargeName, SignBeforeANonDigitIsRefused) {
    for (const std::string name : {"Fe+a", "X-b", "Y+ "}) {
        try {
            parseCharge(name);
            ADD_FAILURE() << name;
        } catch (const std::logic_error& e) {
            EXPECT_STREQ(e.what(), "Invalid charge: last character must be a digit.");
        }
    }
}
