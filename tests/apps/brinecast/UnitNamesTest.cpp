#include "brinecast/UnitNames.h"

#include <gtest/gtest.h>

using korvane::Brinecast::cli::UnitNames;
namespace bc = korvane::Brinecast;

TEST(UnitNames, EveryConcentrationUnitReadsBackToItsName) {
    for (bc::ConcentUnit u : {bc::MolPerKgw, bc::MmolPerKgw, bc::MmolPerL, bc::MgPerL, bc::MgPerKg}) {
        const std::string name = UnitNames::concentrationName(u);
        EXPECT_EQ(UnitNames::concentration(name), u) << name;
    }
    EXPECT_EQ(UnitNames::concentration("MG/l"), bc::MgPerL);  // lab reports vary the case
    EXPECT_FALSE(UnitNames::concentration("mol/kg"));         // per kg of what: refused
    EXPECT_FALSE(UnitNames::concentration("ppm"));
}

TEST(UnitNames, TemperatureAndPressureConvertToKelvinAndPascal) {
    struct Case { double value; const char* unit; double expected; };
    for (const Case& c : {Case{25.0, "\xC2\xB0" "C", 298.15}, Case{25.0, "C", 298.15},
                          Case{25.0, "\xB0" "C", 298.15},
                          Case{373.15, "K", 373.15}}) {
        EXPECT_DOUBLE_EQ(*UnitNames::toKelvin(c.value, c.unit), c.expected) << c.unit;
    }
    for (const Case& c : {Case{101325.0, "Pa", 101325.0}, Case{101.325, "kPa", 101325.0},
                          Case{1.01325, "bar", 101325.0}, Case{0.101325, "MPa", 101325.0},
                          // 14.6959 psi is one standard atmosphere to six figures
                          Case{14.6959487755, "psi", 101325.0}}) {
        EXPECT_NEAR(*UnitNames::toPascal(c.value, c.unit), c.expected, 1e-6) << c.unit;
    }
    EXPECT_FALSE(UnitNames::toKelvin(77.0, "F"));
    EXPECT_FALSE(UnitNames::toPascal(1.0, "atm"));
    EXPECT_FALSE(UnitNames::toPascal(1.0, "psig"));  // gauge pressure would be silently wrong
}

TEST(UnitNames, ChargeSumsArePerTheUnitsBasis) {
    EXPECT_EQ(UnitNames::chargeName(bc::MmolPerKgw), "eq/kgw");
    EXPECT_EQ(UnitNames::chargeName(bc::MgPerL), "eq/L");
    EXPECT_EQ(UnitNames::chargeName(bc::MgPerKg), "eq/kg");
}
