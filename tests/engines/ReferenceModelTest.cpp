// The equations of the reference engine against published and independently computed values,
// and the engine's domain.
#include "engines/CheckTables.h"

#include "BrineVolume.h"
#include "Iapws97.h"
#include "SpiveyBrine.h"

#include <gtest/gtest.h>

using namespace korvane::reference;
using checks::expectRelative;
using checks::number;

TEST(Iapws97, Region1AndSaturationPressureMatchCheckValues) {
    // The official table exercises every one of the 34 terms through h, u, s, cp and w.
    const std::pair<const char*, double Region1Properties::*> properties[] = {
        {"specificVolumeM3PerKg", &Region1Properties::specificVolume}, {"enthalpyKJPerKg", &Region1Properties::enthalpy},
        {"internalEnergyKJPerKg", &Region1Properties::internalEnergy}, {"entropyKJPerKgK", &Region1Properties::entropy},
        {"isobaricHeatCapacityKJPerKgK", &Region1Properties::isobaricHeatCapacity},
        {"speedOfSoundMPerS", &Region1Properties::speedOfSound}};
    for (const char* table : {"if97Region1", "if97Region1Computed"}) {
        for (const auto& row : checks::rows(table).GetArray()) {
            const double T = number(row, "temperatureK"), P = number(row, "pressurePa");
            expectRelative(region1SpecificVolume(T, P), table, row, "specificVolumeM3PerKg");
            for (const auto& [key, property] : properties)
                if (row.HasMember(key)) expectRelative(region1Properties(T, P).*property, table, row, key);
        }
    }
    for (const char* table : {"if97SaturationPressure", "if97SaturationPressureComputed"})
        for (const auto& row : checks::rows(table).GetArray())
            expectRelative(saturationPressure(number(row, "temperatureK")) / 1e6, table, row, "saturationPressureMPa");
}

TEST(SpiveyBrine, WaterAndBrineDensitiesMatchCheckValues) {
    // Rows chosen so that a wrong constant shows: t = 0 isolates a3, p = 70 MPa the D rows.
    for (const auto& row : checks::rows("spivey").GetArray()) {
        const SpiveyDensities got =
            spiveyDensities(number(row, "temperatureC"), number(row, "pressureMPa"), number(row, "molality"));
        expectRelative(got.water, "spivey", row, "waterDensityGPerCm3");
        expectRelative(got.brine, "spivey", row, "brineDensityGPerCm3");
    }
}

TEST(BrineVolume, VolumesMatchCheckValuesAndEveryDomainBoundHolds) {
    for (const char* table : {"engineVolumes", "domainBounds"}) {
        for (const auto& row : checks::rows(table).GetArray()) {
            const double T = number(row, "temperatureK"), nw = number(row, "waterMol");
            const double P = row.HasMember("pressurePa") ? number(row, "pressurePa")
                                                         : saturationPressure(T) * number(row, "timesSaturationPressure");
            const double ns = row.HasMember("saltMol") ? number(row, "saltMol") : number(row, "molality") * nw * waterMolarMass;
            const BrineVolume got = brineVolume(T, P, nw, ns);
            const std::string at = row.HasMember("bound") ? row["bound"].GetString() : table;
            EXPECT_EQ(got.error, row.HasMember("error") ? row["error"].GetInt() : 0) << at;
            EXPECT_EQ(got.pressureRaisedToSaturation, checks::flag(row, "pressureRaisedToSaturation")) << at;
            EXPECT_EQ(got.molalityExtrapolated, checks::flag(row, "molalityExtrapolated")) << at;
            if (row.HasMember("volumeM3")) expectRelative(got.volumeM3, table, row, "volumeM3");
            EXPECT_TRUE(got.error != 0 || got.volumeM3 > 0.0) << at;
        }
    }
}

TEST(BrineVolume, DensitiesMatchTheModelTableAndPublishedData) {
    // 1 kg of water with m mol NaCl: (1 + m M_s) / V. The published values carry the
    // correlation's accuracy (3e-4), the model table its arithmetic (1e-6 for 6 decimals).
    for (const char* table : {"engineDensities", "publishedDensities"}) {
        for (const auto& row : checks::rows(table).GetArray()) {
            const double m = number(row, "molality");
            const BrineVolume got = brineVolume(number(row, "temperatureC") + 273.15, number(row, "pressureMPa") * 1e6,
                                                1.0 / waterMolarMass, m);
            expectRelative((1.0 + m * saltMolarMass) / (got.volumeM3 * 1000.0), table, row, "densityGPerCm3");
        }
    }
}

TEST(BrineVolume, VanishingSaltGivesBackTheWaterVolume) {
    // The salt enters as a brine-minus-water difference of Spivey volumes, so a trace of NaCl
    // gives back the IF97 water volume (Spivey's own water differs from IF97 by about 1e-4; the
    // sqrt(m) term moves the volume by about 4e-10 at 1e-12 mol/kg).
    const double water = brineVolume(330.0, 2e6, 55.0, 0.0).volumeM3;
    EXPECT_NEAR(brineVolume(330.0, 2e6, 55.0, 1e-12).volumeM3, water, 1e-8 * water);
}
