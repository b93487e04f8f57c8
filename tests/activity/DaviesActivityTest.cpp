#include "activity/DaviesActivity.h"

#include "activity/ActivitySystems.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using brinecast_test::seawaterSystem;
using brinecast_test::speciesIndex;
using brinecast_test::speciesModel;
using korvane::Brinecast::DaviesActivity;

namespace {
constexpr double kOneAtmPa = 101325.0;
}

// Davies needs a species' charge only: ions of one charge share one γ whatever their records say,
// and the textbook values at 25 °C, I = 0.1 mol/kgw, are γ = 0.78 (z = 1) and 0.37 (z = 2)
// (Davies 1962; Stumm and Morgan, Aquatic Chemistry, table 3.3). Neutral species: 0.1·I.
TEST(DaviesActivity, CoefficientsDependOnChargeAlone) {
    const auto system = seawaterSystem(298.15);
    const DaviesActivity model(system, speciesModel().reactions, 298.15, kOneAtmPa);
    constexpr double kIonicStrength = 0.1;  // mol/kgw
    std::vector<double> logGamma(system.speciesCount());
    model.logActivityCoefficients(kIonicStrength, logGamma.data());
    struct Expected {
        const char* species;
        double gamma;
    };
    const Expected expected[] = {{"Na+", 0.78}, {"Cl-", 0.78}, {"HCO3-", 0.78}, {"Ca+2", 0.37},
                                 {"SO4-2", 0.37}, {"CO2", std::pow(10.0, 0.01)}, {"CaSO4", std::pow(10.0, 0.01)}};
    for (const Expected& e : expected) {
        SCOPED_TRACE(e.species);
        const std::size_t k = speciesIndex(system, e.species);
        ASSERT_LT(k, system.speciesCount());
        EXPECT_NEAR(std::pow(10.0, logGamma[k]), e.gamma, 0.006);
    }
    EXPECT_EQ(logGamma[speciesIndex(system, "Na+")], logGamma[speciesIndex(system, "Cl-")]);
    EXPECT_EQ(logGamma[speciesIndex(system, "H2O")], 0.0);
    EXPECT_NEAR(model.logWaterActivity(1.0), std::log10(0.983), 1e-15);
}

// The Davies model carries no molar volumes: its log K stays at 1 atm whatever the pressure,
// while A still follows water's dielectric constant at that pressure.
TEST(DaviesActivity, LogKStaysAtOneAtmosphereAndAFollowsPressure) {
    const auto system = seawaterSystem(298.15);
    const DaviesActivity shallow(system, speciesModel().reactions, 298.15, kOneAtmPa);
    const DaviesActivity deep(system, speciesModel().reactions, 298.15, 1000 * kOneAtmPa);
    std::vector<double> logK(system.speciesCount());
    deep.logEquilibriumConstants(1.0, logK.data());
    EXPECT_EQ(logK, system.logK);
    std::vector<double> shallowGamma(system.speciesCount()), deepGamma(system.speciesCount());
    shallow.logActivityCoefficients(0.5, shallowGamma.data());
    deep.logActivityCoefficients(0.5, deepGamma.data());
    const std::size_t sodium = speciesIndex(system, "Na+");
    // A falls by about 4 % from 1 to 1000 atm at 25 °C: ions are less non-ideal.
    EXPECT_NEAR(deepGamma[sodium] / shallowGamma[sodium], 0.96, 0.01);
}
