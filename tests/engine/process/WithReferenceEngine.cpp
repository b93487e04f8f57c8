// Density calculations over the shipped reference engine, which the process-wide bridge loads
// for good: a process of its own, so that the engine it loads is this one.
#include "engines/CheckTables.h"

#include "database/SpeciesModel.h"
#include "engine/KorvaneDll.h"
#include "engine/ProcessedInput.h"
#include "engine/SaltDensityCalculator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

using namespace korvane::Brinecast;
using testing::StrEq;
using testing::ThrowsMessage;

namespace {

Input brine(int unit, std::vector<NameValue> elements, double temperatureK = 298.15, double pressurePa = 101325.0) {
    Input input;
    input.dllPath = BRINECAST_REFERENCE_ENGINE_DIR;
    input.temperature = temperatureK;
    input.pressure = pressurePa;
    input.elements.assign(elements, static_cast<ConcentUnit>(unit));
    return input;
}

/// Built on first use, after every static table of the library is ready.
const SpeciesModel& model() {
    static const SpeciesModel built;
    return built;
}

}  // namespace

TEST(SaltDensityCalculator, DensitiesOverTheReferenceEngineMatchItsModel) {
    const rapidjson::Value& rows = checks::rows("libraryDensities");
    for (const auto& row : rows.GetArray()) {
        const double c = checks::number(row, "sodiumChlorideMmolPerL");
        const Input input =
            brine(MmolPerL, {{"Na", c}, {"Cl", c}}, checks::number(row, "temperatureK"), checks::number(row, "pressurePa"));
        SaltDensityCalculator calculator(input, model());
        checks::expectRelative(0.001 / calculator.mixtureVolume({{"WATER", 1.0}}), "libraryDensities", row, "waterMolPerL");
        checks::expectRelative(calculator.density(), "libraryDensities", row, "densityGPerCm3");
    }
    // The 1000 mmol/L brine of the table in mg/L (22.9898 and 35.453 g/mol): divided by the molar mass.
    const Input perMg = brine(MgPerL, {{"Na", 22989.8}, {"Cl", 35453.0}});
    ASSERT_EQ(checks::number(rows[1], "sodiumChlorideMmolPerL"), 1000.0);
    checks::expectRelative(SaltDensityCalculator(perMg, model()).density(), "libraryDensities", rows[1], "densityGPerCm3");
}

TEST(SaltDensityCalculator, OnlySodiumChlorideIsFormed) {
    const struct {
        const char* brine;
        std::vector<NameValue> elements;         // mmol/L
        SaltDensityCalculator::AmountMap salts;  // mol/L
    } cases[] = {
        {"sodium above chloride: the salt takes all the sodium", {{"Na", 500}, {"Cl", 300}}, {{"NaCl", 0.5}}},
        {"chloride above sodium", {{"Cl", 700}, {"Na", 200}}, {{"NaCl", 0.2}}},
        {"other cations and bromide are left out", {{"Na", 300}, {"K", 200}, {"Cl", 500}, {"Br", 50}}, {{"NaCl", 0.3}}},
        {"bromide without chloride forms nothing", {{"Na", 500}, {"Br", 100}}, {}},
        {"chloride without sodium", {{"Ca", 100}, {"Cl", 200}}, {}},
    };
    for (const auto& c : cases) {
        const Input input = brine(MmolPerL, c.elements);
        SaltDensityCalculator calculator(input, model());
        calculator.formSalts();
        const SaltDensityCalculator::AmountMap& salts = calculator.getSaltAmounts();
        EXPECT_EQ(salts.size(), c.salts.size()) << c.brine;
        for (const auto& [salt, amount] : c.salts) EXPECT_DOUBLE_EQ(salts.count(salt) ? salts.at(salt) : 0.0, amount) << c.brine;
    }
}

TEST(SaltDensityCalculator, WithoutSaltTheLitreHoldsWaterOnlyAndTheMassCountsEveryElement) {
    const Input input = brine(MmolPerL, {{"Ca", 10.0}, {"Mg", 5.0}, {"Na", 20.0}});
    SaltDensityCalculator calculator(input, model());
    const double water = 0.001 / calculator.mixtureVolume({{"WATER", 1.0}});                 // mol in 1 L
    const double mass = 18.01528 * water + 40.08 * 0.010 + 24.312 * 0.005 + 22.9898 * 0.020;  // g
    EXPECT_NEAR(calculator.density(), mass / 1000.0, 1e-12);  // over 1000 cm3
}

TEST(SaltDensityCalculator, RefusesUnitsThatAreNotPerLitreAndUnknownElements) {
    for (int unit : {0, 1, 2, 5, 6, -1}) {  // Undefined, MolPerKgw, MmolPerKgw, MgPerKg, beyond
        EXPECT_THAT([&] { SaltDensityCalculator(brine(unit, {{"Na", 1.0}}), model()); },
                    ThrowsMessage<korvane::UnreacheableException>(StrEq("Density cannot be calculated for this unit.")))
            << unit;
    }
    EXPECT_THAT([] { SaltDensityCalculator(brine(MgPerL, {{"Na", 1.0}, {"Unobtainium", 1.0}}), model()); },
                ThrowsMessage<std::logic_error>(StrEq("Element name not found.")));
}

TEST(SaltDensityCalculator, OnceAnEngineIsLoadedEveryCalculationUsesIt) {
    const Input first = brine(MmolPerL, {{"Na", 1000.0}, {"Cl", 1000.0}});
    const double density = SaltDensityCalculator(first, model()).density();
    const std::string loaded = korvane::KorvaneDll::shared()->libraryPath();
    EXPECT_EQ(loaded, std::filesystem::canonical(BRINECAST_REFERENCE_ENGINE_DIR "/kvpvt64.dll").string());
    // A directory with no engine in it is not even looked at once an engine is loaded.
    Input second = first;
    second.dllPath = "/no/engine/here";
    EXPECT_EQ(SaltDensityCalculator(second, model()).density(), density);
    EXPECT_EQ(korvane::KorvaneDll::shared()->libraryPath(), loaded);
}

TEST(ProcessInput, SodiumChlorideGetsTheDensityOfItsSolution) {
    // 0.5 mol/L NaCl at 25 °C: 1.0177 g/cm3 and 0.506 mol/kgw, interpolated in the NaCl table of the
    // CRC Handbook ("Concentrative properties of aqueous solutions", 20 °C) and moved to 25 °C.
    const ProcessedInput processed = processInput(brine(MmolPerL, {{"Na", 500.0}, {"Cl", 500.0}}), model());
    EXPECT_NEAR(processed.input.density, 1.0177, 0.002);
    EXPECT_NEAR(processed.totals[2], 0.506, 0.001);
}
