// The equations of the reference engine against published and independently computed values.
#include "engines/CheckTables.h"

#include "BrineVolume.h"
#include "Iapws97.h"
#include "SpiveyBrine.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace korvane::reference;

namespace {

/// EXPECT that `got` is within `tolerance` of `want`, relatively.
void expectRelative(double got, double want, double tolerance, const std::string& what) {
    EXPECT_LE(std::fabs(got - want), tolerance * std::fabs(want)) << what << ": got " << got << ", want " << want;
}

}  // namespace

TEST(Iapws97, Region1PropertiesMatchCheckValues) {
    // The official table exercises every one of the 34 terms through h, u, s, cp and w.
    for (const char* table : {"if97Region1", "if97Region1Computed"}) {
        for (const auto& row : checks::rows(table).GetArray()) {
            const double T = checks::number(row, "temperatureK"), P = checks::number(row, "pressurePa");
            const Region1Properties got = region1Properties(T, P);
            const std::string at = std::string(table) + " T=" + std::to_string(T) + " P=" + std::to_string(P);
            const double tol = checks::tolerance(table);
            expectRelative(region1SpecificVolume(T, P), checks::number(row, "specificVolumeM3PerKg"), tol, at + " v");
            expectRelative(got.specificVolume, checks::number(row, "specificVolumeM3PerKg"), tol, at + " v");
            if (!row.HasMember("enthalpyKJPerKg")) continue;
            expectRelative(got.enthalpy, checks::number(row, "enthalpyKJPerKg"), tol, at + " h");
            expectRelative(got.internalEnergy, checks::number(row, "internalEnergyKJPerKg"), tol, at + " u");
            expectRelative(got.entropy, checks::number(row, "entropyKJPerKgK"), tol, at + " s");
            expectRelative(got.isobaricHeatCapacity, checks::number(row, "isobaricHeatCapacityKJPerKgK"), tol, at + " cp");
            expectRelative(got.speedOfSound, checks::number(row, "speedOfSoundMPerS"), tol, at + " w");
        }
    }
}

TEST(Iapws97, SaturationPressureMatchesCheckValues) {
    for (const char* table : {"if97SaturationPressure", "if97SaturationPressureComputed"}) {
        for (const auto& row : checks::rows(table).GetArray()) {
            const double T = checks::number(row, "temperatureK");
            expectRelative(saturationPressure(T) / 1e6, checks::number(row, "saturationPressureMPa"),
                           checks::tolerance(table), std::string(table) + " T=" + std::to_string(T));
        }
    }
}

TEST(SpiveyBrine, WaterAndBrineDensitiesMatchCheckValues) {
    // Rows chosen so that a wrong constant shows: t = 0 isolates a3, p = 70 MPa the D rows.
    for (const auto& row : checks::rows("spivey").GetArray()) {
        const double t = checks::number(row, "temperatureC"), p = checks::number(row, "pressureMPa"),
                     m = checks::number(row, "molality");
        const SpiveyDensities got = spiveyDensities(t, p, m);
        const std::string at = "t=" + std::to_string(t) + " p=" + std::to_string(p) + " m=" + std::to_string(m);
        expectRelative(got.water, checks::number(row, "waterDensityGPerCm3"), checks::tolerance("spivey"), at + " water");
        expectRelative(got.brine, checks::number(row, "brineDensityGPerCm3"), checks::tolerance("spivey"), at + " brine");
    }
}

TEST(BrineVolume, VanishingSaltGivesBackTheWaterVolume) {
    // The salt enters as a brine-minus-water difference of Spivey volumes, so a trace of NaCl
    // gives back the IF97 water volume (Spivey's own water differs from IF97 by about 1e-4; the
    // sqrt(m) term moves the volume by about 4e-10 at 1e-12 mol/kg).
    const double water = brineVolume(330.0, 2e6, 55.0, 0.0).volumeM3;
    const BrineVolume trace = brineVolume(330.0, 2e6, 55.0, 1e-12);
    ASSERT_EQ(trace.error, 0);
    expectRelative(trace.volumeM3, water, 1e-8, "1e-12 mol NaCl");
}
