#include "brinecast/readers/UnitNames.h"

#include <gtest/gtest.h>

#include <utility>

using korvane::Brinecast::cli::UnitNames;
namespace bc = korvane::Brinecast;

// The program test runs one brine in every accepted unit; these are the spellings and refusals.
TEST(UnitNames, LabSpellingsAreReadAndAmbiguousUnitsRefused) {
    for (bc::ConcentUnit u : {bc::MolPerKgw, bc::MmolPerKgw, bc::MmolPerL, bc::MgPerL, bc::MgPerKg}) {
        EXPECT_EQ(UnitNames::concentration(UnitNames::concentrationName(u)), u);
    }
    EXPECT_EQ(UnitNames::concentration("MG/l"), bc::MgPerL);  // lab reports vary the case
    EXPECT_FALSE(UnitNames::concentration("mol/kg"));         // per kg of what: refused
    EXPECT_DOUBLE_EQ(*UnitNames::toKelvin(25.0, "\xB0" "C"), 298.15);  // Latin-1 degree sign
    // One standard atmosphere in each pressure unit; 14.6959 psi to six figures.
    for (const auto& [value, unit] : {std::pair{101.325, "kPa"}, {1.01325, "bar"}, {0.101325, "MPa"},
                                      {14.6959487755, "psi"}}) {
        EXPECT_NEAR(*UnitNames::toPascal(value, unit), 101325.0, 1e-6) << unit;
    }
    EXPECT_FALSE(UnitNames::toKelvin(77.0, "F"));
    EXPECT_FALSE(UnitNames::toPascal(1.0, "atm"));
    EXPECT_FALSE(UnitNames::toPascal(1.0, "psig"));  // gauge pressure would be silently wrong
    EXPECT_EQ(UnitNames::chargeName(bc::MmolPerKgw), "eq/kgw");
    EXPECT_EQ(UnitNames::chargeName(bc::MgPerKg), "eq/kg");
}
