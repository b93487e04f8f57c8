// The equations of the reference engine against published and independently computed values,
// and the engine's domain.
#include "engines/CheckTables.h"

#include "BrineVolume.h"
#include "EngineCodes.h"
#include "Iapws97.h"
#include "SpiveyBrine.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace korvane::reference;

namespace {

void expectRelative(double got, double want, double tolerance, const std::string& what) {
    EXPECT_LE(std::fabs(got - want), tolerance * std::fabs(want)) << what << ": got " << got << ", want " << want;
}

std::string at(const rapidjson::Value& row) {
    std::string text;
    for (const auto& member : row.GetObject()) {
        if (member.value.IsNumber()) text += std::string(" ") + member.name.GetString() + "=" + std::to_string(member.value.GetDouble());
    }
    return text;
}

}  // namespace

TEST(Iapws97, Region1PropertiesMatchCheckValues) {
    // The official table exercises every one of the 34 terms through h, u, s, cp and w.
    for (const char* table : {"if97Region1", "if97Region1Computed"}) {
        const double tol = checks::tolerance(table);
        for (const auto& row : checks::rows(table).GetArray()) {
            const double T = checks::number(row, "temperatureK"), P = checks::number(row, "pressurePa");
            const Region1Properties got = region1Properties(T, P);
            expectRelative(region1SpecificVolume(T, P), checks::number(row, "specificVolumeM3PerKg"), tol, at(row));
            expectRelative(got.specificVolume, checks::number(row, "specificVolumeM3PerKg"), tol, at(row));
            if (!row.HasMember("enthalpyKJPerKg")) continue;
            expectRelative(got.enthalpy, checks::number(row, "enthalpyKJPerKg"), tol, "h" + at(row));
            expectRelative(got.internalEnergy, checks::number(row, "internalEnergyKJPerKg"), tol, "u" + at(row));
            expectRelative(got.entropy, checks::number(row, "entropyKJPerKgK"), tol, "s" + at(row));
            expectRelative(got.isobaricHeatCapacity, checks::number(row, "isobaricHeatCapacityKJPerKgK"), tol, "cp" + at(row));
            expectRelative(got.speedOfSound, checks::number(row, "speedOfSoundMPerS"), tol, "w" + at(row));
        }
    }
}

TEST(Iapws97, SaturationPressureMatchesCheckValues) {
    for (const char* table : {"if97SaturationPressure", "if97SaturationPressureComputed"}) {
        for (const auto& row : checks::rows(table).GetArray()) {
            expectRelative(saturationPressure(checks::number(row, "temperatureK")) / 1e6,
                           checks::number(row, "saturationPressureMPa"), checks::tolerance(table), at(row));
        }
    }
}

TEST(SpiveyBrine, WaterAndBrineDensitiesMatchCheckValues) {
    // Rows chosen so that a wrong constant shows: t = 0 isolates a3, p = 70 MPa the D rows.
    for (const auto& row : checks::rows("spivey").GetArray()) {
        const SpiveyDensities got = spiveyDensities(checks::number(row, "temperatureC"), checks::number(row, "pressureMPa"),
                                                    checks::number(row, "molality"));
        expectRelative(got.water, checks::number(row, "waterDensityGPerCm3"), checks::tolerance("spivey"), at(row));
        expectRelative(got.brine, checks::number(row, "brineDensityGPerCm3"), checks::tolerance("spivey"), at(row));
    }
}

TEST(BrineVolume, VolumesMatchCheckValuesWithTheirWarnings) {
    for (const auto& row : checks::rows("engineVolumes").GetArray()) {
        const BrineVolume got = brineVolume(checks::number(row, "temperatureK"), checks::number(row, "pressurePa"),
                                            checks::number(row, "waterMol"), checks::number(row, "saltMol"));
        EXPECT_EQ(got.error, 0) << at(row);
        expectRelative(got.volumeM3, checks::number(row, "volumeM3"), checks::tolerance("engineVolumes"), at(row));
        EXPECT_EQ(got.pressureRaisedToSaturation, row["pressureRaisedToSaturation"].GetBool()) << at(row);
    }
}

TEST(BrineVolume, DensitiesMatchTheModelTableAndPublishedData) {
    // 1 kg of water with m mol NaCl: (1 + m M_s) / V. The published values carry the
    // correlation's accuracy (3e-4), the model table its arithmetic (1e-6 for 6 decimals).
    for (const char* table : {"engineDensities", "publishedDensities"}) {
        for (const auto& row : checks::rows(table).GetArray()) {
            const double m = checks::number(row, "molality");
            const BrineVolume got = brineVolume(checks::number(row, "temperatureC") + 273.15,
                                                checks::number(row, "pressureMPa") * 1e6, 1.0 / waterMolarMass, m);
            expectRelative((1.0 + m * saltMolarMass) / (got.volumeM3 * 1000.0), checks::number(row, "densityGPerCm3"),
                           checks::tolerance(table), table + at(row));
        }
    }
}

TEST(BrineVolume, EveryDomainBoundHoldsJustInsideAndIsRefusedJustOutside) {
    const double nan = std::numeric_limits<double>::quiet_NaN(), inf = std::numeric_limits<double>::infinity();
    const double kgIn10Mol = 10.0 * waterMolarMass, ps400 = saturationPressure(400.0);
    struct Case {
        const char* bound;
        double T, P, nw, ns;  // K, Pa, mol, mol
        std::int32_t error;
        bool raised, extrapolated;
    };
    const Case cases[] = {
        {"lowest temperature", 273.15, 1e5, 10, 0, 0, false, false},
        {"below lowest temperature", 273.14, 1e5, 10, 0, TemperatureBelowRange, false, false},
        {"highest water temperature", 623.15, 100e6, 10, 0, 0, false, false},
        {"above water temperature", 623.16, 100e6, 10, 0, TemperatureAboveWaterRange, false, false},
        {"highest brine temperature", 548.15, 100e6, 10, 1, 0, false, false},
        {"above brine temperature", 548.16, 100e6, 10, 1, TemperatureAboveBrineRange, false, false},
        {"highest pressure", 300, 100e6, 10, 1, 0, false, false},
        {"above highest pressure", 300, 100.0001e6, 10, 1, PressureOutOfRange, false, false},
        {"smallest pressure", 300, 1e-9, 10, 0, 0, true, false},
        {"zero pressure", 300, 0, 10, 0, PressureOutOfRange, false, false},
        {"at saturation pressure", 400, ps400, 10, 0, 0, false, false},
        {"below saturation pressure", 400, ps400 * (1 - 1e-9), 10, 0, 0, true, false},
        {"some water", 300, 1e5, 1e-9, 0, 0, false, false},
        {"no water", 300, 1e5, 0, 0, AmountOutOfRange, false, false},
        {"negative salt", 300, 1e5, 10, -1e-12, AmountOutOfRange, false, false},
        {"end of fitted molality", 300, 1e5, 10, kgIn10Mol * 5.7, 0, false, false},
        {"extrapolated molality", 300, 1e5, 10, kgIn10Mol * 5.7001, 0, false, true},
        {"highest molality", 300, 1e5, 10, kgIn10Mol * 6.0, 0, false, true},
        {"above highest molality", 300, 1e5, 10, kgIn10Mol * 6.0001, MolalityAboveRange, false, false},
        {"temperature not a number", nan, 1e5, 10, 0, NotFinite, false, false},
        {"infinite pressure", 300, inf, 10, 0, NotFinite, false, false},
        {"salt not a number", 300, 1e5, 10, nan, NotFinite, false, false},
    };
    for (const Case& c : cases) {
        const BrineVolume got = brineVolume(c.T, c.P, c.nw, c.ns);
        EXPECT_EQ(got.error, c.error) << c.bound;
        EXPECT_EQ(got.pressureRaisedToSaturation, c.raised) << c.bound;
        EXPECT_EQ(got.molalityExtrapolated, c.extrapolated) << c.bound;
        if (c.error == 0) {
            EXPECT_GT(got.volumeM3, 0.0) << c.bound;
        }
    }
}

TEST(BrineVolume, VanishingSaltGivesBackTheWaterVolume) {
    // The salt enters as a brine-minus-water difference of Spivey volumes, so a trace of NaCl
    // gives back the IF97 water volume (Spivey's own water differs from IF97 by about 1e-4; the
    // sqrt(m) term moves the volume by about 4e-10 at 1e-12 mol/kg).
    expectRelative(brineVolume(330.0, 2e6, 55.0, 1e-12).volumeM3, brineVolume(330.0, 2e6, 55.0, 0.0).volumeM3, 1e-8,
                   "1e-12 mol NaCl");
}
