#include "activity/WaterProperties.h"

#include "activity/ActivityReference.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>

using korvane::Brinecast::WaterProperties;

// Every brine of the reference set (0-200 degC, 1-1000 atm; the effective pressure of the hot ones
// at 1 atm is water's boiling pressure): the water properties PHREEQC reported for it. The fits are
// the same, so they agree to rounding.
TEST(WaterProperties, MatchReferenceOverTemperatureAndPressure) {
    constexpr double kRelative = 1e-12;
    for (const auto& brine : brinecast_test::activityReference()) {
        SCOPED_TRACE(brine.name);
        const WaterProperties water = WaterProperties::at(brine.input.temperature, brine.input.pressure);
        const std::pair<const char*, double> values[] = {
            {"P_atm", water.pressureAtm},        {"rho0", water.densityGPerCm3}, {"kappa0", water.compressibilityPerAtm},
            {"eps_r", water.dielectricConstant}, {"A", water.debyeHuckelA},      {"B", water.debyeHuckelB},
            {"Av", water.volumeSlope},           {"QBrn", water.bornFunction}};
        for (const auto& [key, value] : values) {
            const double expected = brine.water.at(key);
            EXPECT_NEAR(value / expected, 1.0, kRelative) << key;
        }
    }
}

// Textbook values, independent of the reference run: at 25 degC and 1 atm the Debye-Hückel A is
// 0.509-0.511 (kg/mol)^0.5 and B 0.328-0.329 per Angstrom (Truesdell and Jones 1974; Robinson and
// Stokes 1959), the dielectric constant 78.4 and the density 0.99705 g/cm3; 1 atm of water boils
// at 100 degC.
TEST(WaterProperties, AgreeWithTextbookValuesAt25Celsius) {
    const WaterProperties water = WaterProperties::at(298.15, 101325.0);
    EXPECT_NEAR(water.debyeHuckelA, 0.510, 0.0015);
    EXPECT_NEAR(water.debyeHuckelB, 0.3285, 0.0008);
    EXPECT_NEAR(water.dielectricConstant, 78.4, 0.1);
    EXPECT_NEAR(water.densityGPerCm3, 0.99705, 2e-5);
    EXPECT_DOUBLE_EQ(water.pressureAtm, 1.0);
    EXPECT_NEAR(WaterProperties::at(373.15, 101325.0).saturationPressureAtm, 1.0, 0.001);
}
