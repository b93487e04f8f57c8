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
    EXPECT_FALSE(UnitNames::amount("ppb"));
    EXPECT_FALSE(UnitNames::amount("meq/kg"));
    EXPECT_EQ(UnitNames::chargeName(bc::MmolPerKgw), "eq/kgw");
    EXPECT_EQ(UnitNames::chargeName(bc::MgPerKg), "eq/kg");
}

// Oilfield reports: the same 25 °C and 1 atm in every temperature and pressure unit, gauge
// pressures counted from 1 atm; temperature and pressure spellings are exact, since "mPa" and
// "MPa" differ by nine orders of magnitude.
TEST(UnitNames, EveryTemperatureAndPressureUnitReadsTheSameConditions) {
    const std::pair<double, const char*> temperatures[] = {
        {298.15, "K"}, {25.0, "\xC2\xB0" "C"}, {25.0, "\xB0" "C"}, {25.0, "degC"},
        {77.0, "\xC2\xB0" "F"}, {77.0, "F"}, {77.0, "degF"}};
    for (const auto& [value, unit] : temperatures) EXPECT_NEAR(*UnitNames::toKelvin(value, unit), 298.15, 1e-12) << unit;
    // 14.6959 psi to six figures.
    const std::pair<double, const char*> pressures[] = {
        {101325.0, "Pa"}, {101.325, "kPa"}, {0.101325, "MPa"}, {1.01325, "bar"}, {1.0, "atm"},
        {14.6959487755, "psi"}, {14.6959487755, "psia"}, {0.0, "psig"}, {0.0, "barg"}};
    for (const auto& [value, unit] : pressures) EXPECT_NEAR(*UnitNames::toPascal(value, unit), 101325.0, 1e-6) << unit;
    EXPECT_NEAR(*UnitNames::toPascal(1000.0, "psig"), 1000.0 * 6894.757293168361 + 101325.0, 1e-6);
    EXPECT_DOUBLE_EQ(*UnitNames::toKelvin(212.0, "\xC2\xB0" "F"), 373.15);
    for (const char* refused : {"R", "degR", "k", "f"}) EXPECT_FALSE(UnitNames::toKelvin(1.0, refused)) << refused;
    for (const char* refused : {"torr", "mPa", "PSIG", "bara", "kg/cm2"}) {
        EXPECT_FALSE(UnitNames::toPascal(1.0, refused)) << refused;
    }
    EXPECT_TRUE(UnitNames::isGauge("psig"));
    EXPECT_FALSE(UnitNames::isGauge("psia"));
}

// Alkalinity as labs report it: equivalents, or the mass of bicarbonate or calcium carbonate
// that carries as many (the reader's amount units are tested with the reader).
TEST(UnitNames, AlkalinityUnitsConvertToMilliequivalents) {
    // One meq/L of alkalinity as bicarbonate and as calcium carbonate mass.
    const std::pair<double, const char*> alkalinities[] = {
        {1.0, "meq/L"}, {61.0171, "mg/L as HCO3-"}, {61.0171, "mg/L as HCO3"}, {50.0435, "mg/L as CaCO3"},
        {50.0435, "MG/L AS CACO3"}};
    for (const auto& [value, unit] : alkalinities) {
        EXPECT_NEAR(*UnitNames::alkalinityMeqPerL(value, unit), 1.0, 1e-12) << unit;
    }
    for (const char* refused : {"mg/L", "mg/L as CO3", "meq/kg", ""}) {
        EXPECT_FALSE(UnitNames::alkalinityMeqPerL(1.0, refused)) << refused;
    }
}
