#include "brinecast/calculation/EngineDensity.h"

#include <gtest/gtest.h>

namespace bc = korvane::Brinecast;
using korvane::Brinecast::cli::EngineDensity;

TEST(EngineDensity, PerLitreBrinesGetTheReferenceEnginesDensity) {
    struct Case { double temperatureK; double pressurePa; double naClMgPerL; double low, high; };
    // Bounds from NaCl solution densities (CRC Handbook tables): 0.1 % and 8.5 % NaCl at 20-25 °C
    // about 0.998 and 1.059 g/cm3; hot water is lighter, pressure makes it heavier.
    const Case cases[] = {
        {298.15, 101325.0, 1000.0, 0.995, 1.002},
        {298.15, 101325.0, 88000.0, 1.05, 1.07},
        {363.15, 101325.0, 88000.0, 1.01, 1.04},
        {363.15, 50e6, 88000.0, 1.03, 1.06},
    };
    for (const Case& c : cases) {
        bc::Input input;
        input.dllPath = BRINECAST_TEST_ENGINE_DIR;
        input.temperature = c.temperatureK;
        input.pressure = c.pressurePa;
        // Sodium chloride by mass: 39.34 % sodium, 60.66 % chloride.
        input.elements.assign({{"Na", 0.3934 * c.naClMgPerL}, {"Cl", 0.6066 * c.naClMgPerL}}, bc::MgPerL);
        const double density = EngineDensity::of(input);
        EXPECT_GT(density, c.low) << c.temperatureK << " K, " << c.naClMgPerL << " mg/L";
        EXPECT_LT(density, c.high) << c.temperatureK << " K, " << c.naClMgPerL << " mg/L";
    }
}
