// The shipped reference engine (kvpvt64.dll), loaded and driven through the engine bridge exactly
// as the salt density calculator drives it. A bridge instance of its own, never the process-wide one.
#include "engines/CheckTables.h"

#include "EngineCodes.h"
#include "Iapws97.h"
#include "engine/KorvaneDll.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <vector>

using korvane::KorvaneDll;
namespace ref = korvane::reference;

namespace {

constexpr double waterMolarMass = 0.01801528;  // kg/mol, as the engine uses it
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double inf = std::numeric_limits<double>::infinity();

KorvaneDll& referenceEngine() {
    static KorvaneDll engine;
    if (!engine.isLoaded()) engine.loadOnce(BRINECAST_REFERENCE_ENGINE_DIR);
    return engine;
}

/// One engine context with its error array, released at the end of the scope.
class Session {
public:
    Session() : context(engine.createContext(&count, codes)) {}
    ~Session() { engine.destroyContext(context); }
    std::vector<std::int32_t> reported() const { return std::vector<std::int32_t>(codes, codes + count); }
    bool failed() const { return count > 0 && *std::max_element(codes, codes + count) >= KVPVT_FIRST_ERROR_CODE; }

    KorvaneDll& engine = referenceEngine();
    std::int32_t count = 0;
    std::int32_t codes[KVPVT_ERROR_CAPACITY] = {};
    KvpvtContext* context;
};

struct Answer {
    double volumeM3 = notANumber;
    std::vector<std::int32_t> codes;  ///< every code reported on the way; the failing one last
};

constexpr std::nullopt_t noSalt = std::nullopt;

/// The whole calculation for water and, unless `saltMol` is empty, NaCl.
Answer volumeOf(double temperatureK, double pressurePa, double waterMol, std::optional<double> saltMol) {
    Session s;
    Answer answer;
    auto keep = [&] {
        answer.codes.insert(answer.codes.end(), s.codes, s.codes + s.count);
        return !s.failed();
    };
    std::int32_t water = -1, salt = -1, phase = -1;
    const bool withSalt = saltMol.has_value();
    s.engine.loadComponent(s.context, "WATER", &water, &s.count, s.codes);
    if (!keep()) return answer;
    if (withSalt) {
        s.engine.loadComponent(s.context, "NaCl", &salt, &s.count, s.codes);
        if (!keep()) return answer;
    }
    for (const char* set : {"LBIP1", "LBIP2", "LBIP3"}) {
        s.engine.addBipSet(s.context, set, &s.count, s.codes);
        if (!keep()) return answer;
    }
    s.engine.addModel(s.context, "MCPA", &s.count, s.codes);
    if (!keep()) return answer;
    s.engine.loadSaltDensityModel(s.context, "MSALTDEN", &s.count, s.codes);
    if (!keep()) return answer;
    s.engine.addPhase(s.context, "water", water, &phase, &s.count, s.codes);
    if (!keep()) return answer;
    std::vector<double> amounts(withSalt ? 2 : 1);
    amounts[water] = waterMol;
    if (withSalt) amounts[salt] = *saltMol;
    s.engine.evaluate(s.context, temperatureK, pressurePa, amounts.data(), static_cast<std::int32_t>(amounts.size()),
                      &s.count, s.codes);
    if (!keep()) return answer;
    double volume = notANumber;
    s.engine.phaseVolume(s.context, phase, &volume, &s.count, s.codes);
    if (keep()) answer.volumeM3 = volume;
    return answer;
}

void expectRelative(double got, double want, double tolerance, const std::string& what) {
    EXPECT_LE(std::fabs(got - want), tolerance * std::fabs(want)) << what << ": got " << got << ", want " << want;
}

}  // namespace

TEST(ReferenceEngine, LoadsFromItsBuildDirectoryUnderTheFirstFileName) {
    ASSERT_TRUE(referenceEngine().isLoaded()) << "no engine in " << BRINECAST_REFERENCE_ENGINE_DIR;
    const std::string& path = referenceEngine().libraryPath();
    EXPECT_EQ(path.substr(path.rfind('/') + 1), "kvpvt64.dll");
}

TEST(ReferenceEngine, VolumesMatchCheckValuesWithTheirWarnings) {
    for (const auto& row : checks::rows("engineVolumes").GetArray()) {
        const double T = checks::number(row, "temperatureK"), P = checks::number(row, "pressurePa");
        const double nw = checks::number(row, "waterMol"), ns = checks::number(row, "saltMol");
        const std::string at = "T=" + std::to_string(T) + " P=" + std::to_string(P) + " n_s=" + std::to_string(ns);
        const Answer answer = volumeOf(T, P, nw, ns);
        expectRelative(answer.volumeM3, checks::number(row, "volumeM3"), checks::tolerance("engineVolumes"), at);
        const std::vector<std::int32_t> warnings =
            row["pressureRaisedToSaturation"].GetBool() ? std::vector<std::int32_t>{ref::PressureRaisedToSaturation}
                                                        : std::vector<std::int32_t>{};
        EXPECT_EQ(answer.codes, warnings) << at;
    }
}

TEST(ReferenceEngine, BrineDensitiesMatchTheModelTableAndPublishedData) {
    // 1 kg of water with m mol NaCl: density (1 + m M_s) / V. The published values carry the
    // correlation's accuracy (3e-4), the model table its arithmetic (1e-6 for 6 decimals).
    for (const char* table : {"engineDensities", "publishedDensities"}) {
        for (const auto& row : checks::rows(table).GetArray()) {
            const double t = checks::number(row, "temperatureC"), p = checks::number(row, "pressureMPa");
            const double m = checks::number(row, "molality");
            const Answer answer = volumeOf(t + 273.15, p * 1e6, 1.0 / waterMolarMass, m);
            const double density = (1.0 + m * 0.0584428) / (answer.volumeM3 * 1000.0);  // g/cm3
            expectRelative(density, checks::number(row, "densityGPerCm3"), checks::tolerance(table),
                           std::string(table) + " t=" + std::to_string(t) + " p=" + std::to_string(p) +
                               " m=" + std::to_string(m));
        }
    }
}

TEST(ReferenceEngine, EveryDomainBoundHoldsJustInsideAndIsRefusedJustOutside) {
    const double waterMass = 10.0 * waterMolarMass;  // kg in 10 mol
    const double ps400 = ref::saturationPressure(400.0);
    struct Case {
        const char* bound;
        double T, P, nw;  // K, Pa, mol
        std::optional<double> ns;  // mol; empty: no NaCl component
        std::vector<std::int32_t> codes;
    };
    const Case cases[] = {
        {"lowest temperature", 273.15, 1e5, 10, noSalt, {}},
        {"below lowest temperature", 273.14, 1e5, 10, noSalt, {ref::TemperatureBelowRange}},
        {"highest water temperature", 623.15, 100e6, 10, noSalt, {}},
        {"above water temperature", 623.16, 100e6, 10, noSalt, {ref::TemperatureAboveWaterRange}},
        {"highest brine temperature", 548.15, 100e6, 10, 1, {}},
        {"above brine temperature", 548.16, 100e6, 10, 1, {ref::TemperatureAboveBrineRange}},
        {"above brine temperature, no salt", 548.16, 100e6, 10, 0, {}},
        {"highest pressure", 300, 100e6, 10, 1, {}},
        {"above highest pressure", 300, 100.0001e6, 10, 1, {ref::PressureOutOfRange}},
        {"smallest pressure, raised", 300, 1e-9, 10, noSalt, {ref::PressureRaisedToSaturation}},
        {"zero pressure", 300, 0, 10, noSalt, {ref::PressureOutOfRange}},
        {"at saturation pressure", 400, ps400, 10, noSalt, {}},
        {"below saturation pressure", 400, ps400 * (1 - 1e-9), 10, noSalt, {ref::PressureRaisedToSaturation}},
        {"some water", 300, 1e5, 1e-9, noSalt, {}},
        {"no water", 300, 1e5, 0, noSalt, {ref::AmountOutOfRange}},
        {"no salt", 300, 1e5, 10, 0, {}},
        {"negative salt", 300, 1e5, 10, -1e-12, {ref::AmountOutOfRange}},
        {"end of fitted molality", 300, 1e5, 10, waterMass * 5.7, {}},
        {"extrapolated molality", 300, 1e5, 10, waterMass * 5.7001, {ref::MolalityExtrapolated}},
        {"highest molality", 300, 1e5, 10, waterMass * 6.0, {ref::MolalityExtrapolated}},
        {"above highest molality", 300, 1e5, 10, waterMass * 6.0001, {ref::MolalityAboveRange}},
        {"raised and extrapolated", 400, 1e5, 10, waterMass * 5.8,
         {ref::PressureRaisedToSaturation, ref::MolalityExtrapolated}},
        {"temperature not a number", notANumber, 1e5, 10, noSalt, {ref::NotFinite}},
        {"infinite pressure", 300, inf, 10, noSalt, {ref::NotFinite}},
        {"salt not a number", 300, 1e5, 10, notANumber, {ref::NotFinite}},
        {"infinite water", 300, 1e5, inf, noSalt, {ref::NotFinite}},
    };
    for (const Case& c : cases) {
        const Answer answer = volumeOf(c.T, c.P, c.nw, c.ns);
        EXPECT_EQ(answer.codes, c.codes) << c.bound;
        const bool refused = !c.codes.empty() && c.codes.back() >= KVPVT_FIRST_ERROR_CODE;
        EXPECT_EQ(std::isfinite(answer.volumeM3) && answer.volumeM3 > 0, !refused) << c.bound;
    }
}

TEST(ReferenceEngine, RefusesNamesAndCallsItDoesNotKnow) {
    Session s;
    std::int32_t water = -1, salt = -1, phase = -1;
    auto expectCodes = [&](std::vector<std::int32_t> want, const char* step) { EXPECT_EQ(s.reported(), want) << step; };

    s.engine.loadComponent(s.context, "KCl", &water, &s.count, s.codes);
    expectCodes({ref::UnknownComponent}, "component KCl");
    s.engine.loadComponent(s.context, "water", &water, &s.count, s.codes);
    expectCodes({ref::UnknownComponent}, "component in lower case");
    s.engine.addBipSet(s.context, "LBIP4", &s.count, s.codes);
    expectCodes({ref::UnknownBipSet}, "BIP set LBIP4");
    s.engine.addModel(s.context, "PR", &s.count, s.codes);
    expectCodes({ref::UnknownModel}, "model PR");
    s.engine.loadSaltDensityModel(s.context, "MCPA", &s.count, s.codes);
    expectCodes({ref::UnknownSaltDensityModel}, "salt density model MCPA");
    s.engine.addPhase(s.context, "oil", 0, &phase, &s.count, s.codes);
    expectCodes({ref::UnknownPhase}, "phase oil");

    // Components are numbered in loading order, so here NaCl is 0 and WATER 1.
    s.engine.loadComponent(s.context, "NaCl", &salt, &s.count, s.codes);
    s.engine.loadComponent(s.context, "WATER", &water, &s.count, s.codes);
    EXPECT_EQ(salt, 0);
    EXPECT_EQ(water, 1);
    s.engine.addPhase(s.context, "water", salt, &phase, &s.count, s.codes);
    expectCodes({ref::SolventIsNotWater}, "phase with NaCl as solvent");
    const double amounts[] = {1.0, 55.0};
    s.engine.evaluate(s.context, 300.0, 1e5, amounts, 2, &s.count, s.codes);
    expectCodes({ref::SetUpIncomplete}, "evaluation before models and phase");
    s.engine.addModel(s.context, "MCPA", &s.count, s.codes);
    s.engine.loadSaltDensityModel(s.context, "MSALTDEN", &s.count, s.codes);
    s.engine.addPhase(s.context, "water", water, &phase, &s.count, s.codes);
    expectCodes({}, "phase water");
    double volume = 0.0;
    s.engine.phaseVolume(s.context, phase, &volume, &s.count, s.codes);
    expectCodes({ref::NotEvaluated}, "volume before evaluation");
    s.engine.evaluate(s.context, 300.0, 1e5, amounts, 1, &s.count, s.codes);
    expectCodes({ref::AmountCountMismatch}, "one amount for two components");
    s.engine.evaluate(s.context, 300.0, 1e5, amounts, 2, &s.count, s.codes);
    expectCodes({}, "evaluation");
    s.engine.phaseVolume(s.context, phase + 1, &volume, &s.count, s.codes);
    expectCodes({ref::UnknownPhaseIndex}, "volume of a phase never added");
    s.engine.phaseVolume(s.context, phase, &volume, &s.count, s.codes);
    expectCodes({}, "volume");
    // Whatever the order of loading, the amounts follow the engine's indices.
    expectRelative(volume, volumeOf(300.0, 1e5, 55.0, 1.0).volumeM3, 1e-15, "NaCl loaded first");
}
