// Salt density calculations over the shipped reference engine, loaded by the process-wide bridge:
// a process of its own, so that the engine it loads is this one.
#include "engines/CheckTables.h"

#include "database/SpeciesModel.h"
#include "engine/KorvaneDll.h"
#include "engine/SaltDensityCalculator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

using namespace korvane::Brinecast;
using korvane::KorvaneError;

namespace {

Input brine(ConcentUnit unit, std::vector<NameValue> elements, double temperatureK = 298.15,
            double pressurePa = 101325.0) {
    Input input;
    input.dllPath = BRINECAST_REFERENCE_ENGINE_DIR;
    input.temperature = temperatureK;
    input.pressure = pressurePa;
    input.elements.assign(elements, unit);
    return input;
}

void expectRelative(double got, double want, double tolerance, const std::string& what) {
    EXPECT_LE(std::fabs(got - want), tolerance * std::fabs(want)) << what << ": got " << got << ", want " << want;
}

/// Built on first use, after every static table of the library is ready.
const SpeciesModel& model() {
    static const SpeciesModel built;
    return built;
}

}  // namespace

TEST(SaltDensityCalculator, DensitiesOverTheReferenceEngineMatchItsModel) {
    for (const auto& row : checks::rows("libraryDensities").GetArray()) {
        const double T = checks::number(row, "temperatureK"), P = checks::number(row, "pressurePa");
        const double c = checks::number(row, "sodiumChlorideMmolPerL");
        Input input = brine(MmolPerL, {{"Na", c}, {"Cl", c}}, T, P);
        SaltDensityCalculator calculator(input, model());
        checks::expectRelative(0.001 / calculator.mixtureVolume({{"WATER", 1.0}}), "libraryDensities", row, "waterMolPerL");
        checks::expectRelative(calculator.density(), "libraryDensities", row, "densityGPerCm3");
    }
}

TEST(SaltDensityCalculator, MilligramsPerLitreAreDividedByTheMolarMass) {
    // 1 mol/L each of Na and Cl, once in mmol/L and once in mg/L (22.9898 and 35.453 g/mol).
    Input perMmol = brine(MmolPerL, {{"Na", 1000.0}, {"Cl", 1000.0}});
    Input perMg = brine(MgPerL, {{"Na", 22989.8}, {"Cl", 35453.0}});
    SaltDensityCalculator fromMmol(perMmol, model()), fromMg(perMg, model());
    EXPECT_DOUBLE_EQ(fromMg.getElementAmounts().at("Na"), 1.0);
    EXPECT_DOUBLE_EQ(fromMg.getElementAmounts().at("Cl"), 1.0);
    expectRelative(fromMg.density(), fromMmol.density(), 1e-14, "mg/L against mmol/L");
}

TEST(SaltDensityCalculator, OnlySodiumChlorideIsFormed) {
    struct Case {
        const char* brine;
        std::vector<NameValue> elements;  // mmol/L
        SaltDensityCalculator::AmountMap salts;  // mol/L
    };
    const Case cases[] = {
        {"sodium above chloride: the salt takes all the sodium", {{"Na", 500}, {"Cl", 300}}, {{"NaCl", 0.5}}},
        {"chloride above sodium", {{"Cl", 700}, {"Na", 200}}, {{"NaCl", 0.2}}},
        {"other cations and bromide are left out", {{"Na", 300}, {"K", 200}, {"Cl", 500}, {"Br", 50}}, {{"NaCl", 0.3}}},
        {"bromide without chloride forms nothing", {{"Na", 500}, {"Br", 100}}, {}},
        {"no chloride and no bromide", {{"Na", 500}, {"Ca", 20}}, {}},
        {"chloride without sodium", {{"Ca", 100}, {"Cl", 200}}, {}},
        {"no elements", {}, {}},
    };
    for (const Case& c : cases) {
        Input input = brine(MmolPerL, c.elements);
        SaltDensityCalculator calculator(input, model());
        calculator.formSalts();
        const SaltDensityCalculator::AmountMap& salts = calculator.getSaltAmounts();
        EXPECT_EQ(salts.size(), c.salts.size()) << c.brine;
        for (const auto& [salt, amount] : c.salts) {
            ASSERT_EQ(salts.count(salt), 1u) << c.brine << ": no " << salt;
            EXPECT_DOUBLE_EQ(salts.at(salt), amount) << c.brine;
        }
    }
}

TEST(SaltDensityCalculator, WithoutSaltTheVolumeIsThatOfWaterAndTheMassCountsEveryElement) {
    // No NaCl: the litre holds water only, V2 = 0.001 m3, so the density is the mass over 1000 cm3.
    Input input = brine(MmolPerL, {{"Ca", 10.0}, {"Mg", 5.0}, {"Na", 20.0}});
    SaltDensityCalculator calculator(input, model());
    const double water = 0.001 / calculator.mixtureVolume({{"WATER", 1.0}});  // mol
    const korvane::Brinecast::ElementTable& table = model().elementTable();
    const double mass = table.molecularWeight("H2O") * water + table.molarMass("Ca") * 0.010 +
                        table.molarMass("Mg") * 0.005 + table.molarMass("Na") * 0.020;  // g
    expectRelative(calculator.solutionMass(water), mass, 1e-14, "mass of one litre");
    expectRelative(calculator.density(), mass / 1000.0, 1e-12, "density");
}

TEST(SaltDensityCalculator, RefusesUnitsThatAreNotPerLitre) {
    for (int unit : {0, 1, 2, 5, 6, -1}) {  // Undefined, MolPerKgw, MmolPerKgw, MgPerKg, beyond
        Input input = brine(static_cast<ConcentUnit>(unit), {{"Na", 1.0}});
        try {
            SaltDensityCalculator calculator(input, model());
            ADD_FAILURE() << "unit " << unit << " accepted";
        } catch (const korvane::UnreacheableException& e) {
            EXPECT_STREQ(e.what(), "Density cannot be calculated for this unit.") << unit;
        }
    }
    Input unknown = brine(MgPerL, {{"Na", 1.0}, {"Unobtainium", 1.0}});
    try {
        SaltDensityCalculator calculator(unknown, model());
        ADD_FAILURE() << "unknown element accepted";
    } catch (const std::logic_error& e) {
        EXPECT_STREQ(e.what(), "Element name not found.");
    }
}

TEST(SaltDensityCalculator, SecondCalculationUsesTheLoadedEngine) {
    Input first = brine(MmolPerL, {{"Na", 1000.0}, {"Cl", 1000.0}});
    const double density = SaltDensityCalculator(first, model()).density();
    const std::string loaded = korvane::KorvaneDll::shared()->libraryPath();
    EXPECT_THAT(loaded, testing::EndsWith("/kvpvt64.dll"));
    // A directory with no engine in it is not even looked at once an engine is loaded.
    Input second = first;
    second.dllPath = "/no/engine/here";
    EXPECT_EQ(SaltDensityCalculator(second, model()).density(), density);
    EXPECT_EQ(korvane::KorvaneDll::shared()->libraryPath(), loaded);
}
