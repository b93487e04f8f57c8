#include "engine/ProcessedInput.h"

#include "database/ElementTable.h"
#include "database/SpeciesModel.h"

#include <korvane/KorvaneError.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

using namespace korvane::Brinecast;
using testing::StrEq;
using testing::ThrowsMessage;

namespace {

const SpeciesModel& embeddedModel() {
    static const SpeciesModel model;
    return model;
}

Input analysis(std::vector<NameValue> elements, ConcentUnit unit, std::vector<NameValue> gases = {},
               ConcentUnit gasUnit = MolPerKgw) {
    Input input;
    input.dllPath = "/no/engine/here";  // reaching the density calculation would throw
    input.elements.assign(elements, unit);
    input.gases.assign(gases, gasUnit);
    return input;
}

template <typename Error>
void expectFailure(const Input& input, const std::string& message) {
    EXPECT_THAT([&] { processInput(input, embeddedModel()); }, ThrowsMessage<Error>(StrEq(message)));
}

const double waterPerKg = 1000.0 / 18.01528;  // mol of H2O in 1 kg

}  // namespace

TEST(ProcessInput, ValidationRunsInOrderBeforeAnythingElse) {
    Input emptyPath = analysis({{"Na", 1.0}}, Undefined, {{"CO2", 1.0}}, MgPerL);
    emptyPath.dllPath.clear();
    expectFailure<korvane::KorvaneError>(emptyPath, "Korvane dll path is not set.");
    expectFailure<korvane::KorvaneError>(analysis({{"Na", 1.0}}, Undefined, {{"CO2", 1.0}}, MgPerL),
                                         "Input element concentration unit is not set.");
    expectFailure<korvane::KorvaneError>(analysis({}, Undefined, {{"CO2", 1.0}}, MmolPerKgw),
                                         "Input gas concentration unit must be mol/kgw.");
    EXPECT_NO_THROW(processInput(analysis({{"Na", 1.0}}, MolPerKgw, {}, Undefined), embeddedModel()));
}

TEST(ProcessInput, MissingConditionsTakeDefaultsAndTheDensityOnlyWhenNeeded) {
    const struct {
        double temperature, pressure, density;
        ConcentUnit unit;  // Undefined: no elements
        double expectedTemperature, expectedPressure, expectedDensity;
    } cases[] = {
        {0.0, -1.0, 0.0, MolPerKgw, 298.15, 101325.0, 1.0}, {1e-9, 2e5, -2.0, MmolPerKgw, 1e-9, 2e5, 1.0},
        {NAN, 0.0, 0.0, MgPerKg, NAN, 101325.0, 1.0},       {300.0, 1e7, 1.02, MgPerL, 300.0, 1e7, 1.02},
        {300.0, 1e7, 0.9, MolPerKgw, 300.0, 1e7, 0.9},      {300.0, 1e7, -1.0, Undefined, 300.0, 1e7, -1.0},
    };
    for (const auto& c : cases) {
        Input input = analysis(c.unit == Undefined ? std::vector<NameValue>{} : std::vector<NameValue>{{"Na", 100.0}}, c.unit);
        input.temperature = c.temperature, input.pressure = c.pressure, input.density = c.density;
        const Input settled = processInput(input, embeddedModel()).input;
        EXPECT_TRUE(std::isnan(c.expectedTemperature) ? std::isnan(settled.temperature)
                                                      : settled.temperature == c.expectedTemperature);
        EXPECT_EQ(settled.pressure, c.expectedPressure);
        EXPECT_EQ(settled.density, c.expectedDensity) << "unit " << c.unit;
    }
}

TEST(ProcessInput, BasisNamesAreElementsThenGasesNotCountedInAnElement) {
    const struct {
        Input input;
        std::vector<std::string> names;
        std::vector<double> totals;  // mol/kgw
    } cases[] = {
        {analysis({}, Undefined, {{"H2S", 0.002}, {"CO2", 0.01}}), {"H2O", "H+", "HS-", "CO3-2"}, {waterPerKg, 0.0, 0.002, 0.01}},
        {analysis({{"C", 0.003}, {"Na", 0.01}}, MolPerKgw, {{"CO2", 0.002}, {"H2S", 0.001}}),
         {"H2O", "H+", "CO3-2", "Na+", "HS-"}, {waterPerKg, 0.0, 0.005, 0.01, 0.001}},
        {analysis({{"S(-2)", 1.0}}, MmolPerKgw, {{"H2S", 0.004}}), {"H2O", "H+", "HS-"}, {waterPerKg, 0.0, 0.005}},
        // The same gas twice beside its element: both amounts join it, and one total more than basis
        // names is left over, never written (the sanitizer build watches that nothing reads it).
        {analysis({{"C", 0.003}}, MolPerKgw, {{"CO2", 0.001}, {"CO2", 0.002}}), {"H2O", "H+", "CO3-2"},
         {waterPerKg, 0.0, 0.006, 0.0}},
    };
    for (const auto& c : cases) {
        const ProcessedInput processed = processInput(c.input, embeddedModel());
        EXPECT_EQ(processed.basisNames, c.names);
        ASSERT_EQ(processed.totals.size(), c.totals.size());
        for (std::size_t i = 0; i < c.totals.size(); ++i) EXPECT_DOUBLE_EQ(processed.totals[i], c.totals[i]) << i;
    }
}

TEST(ProcessInput, RefusesRepeatedBasesAndUnknownNames) {
    for (const Input& input : {analysis({{"Na", 0.1}, {"Na", 0.2}}, MolPerKgw), analysis({{"H", 0.1}}, MolPerKgw),
                               analysis({}, Undefined, {{"CO2", 0.1}, {"CO2", 0.2}})})
        expectFailure<std::logic_error>(input, "A repeated basis found.");
    for (ConcentUnit unit : {MolPerKgw, MgPerKg}) {
        expectFailure<std::logic_error>(analysis({{"Na", 1.0}, {"S", 1.0}}, unit), "Element name not found.");
        expectFailure<std::logic_error>(analysis({{"Na", 1.0}}, unit, {{"CH4", 0.1}}), "Gas name not found!");
    }
    Input unknownUnit = analysis({{"Na", 1.0}}, static_cast<ConcentUnit>(9));
    unknownUnit.density = 1.0;  // skips the density calculation, so the conversion meets the unit
    expectFailure<std::logic_error>(unknownUnit, "Concentration unit not found.");
}

// One brine written in every unit, as labs report it, comes back to the same molalities.
TEST(ProcessInput, OneBrineInEveryUnitGivesTheSameTotals) {
    const std::vector<NameValue> brine = {{"Na", 1.2}, {"Ca", 0.15}, {"Cl", 1.45}, {"S(6)", 0.02}, {"C", 0.004}};
    const ElementTable& table = embeddedModel().elementTable();
    const double density = 1.08;  // g/cm3; any value, the same both ways
    double soluteKg = 0.0;        // per kg of water, counting each element as its reported ion
    for (const NameValue& e : brine) soluteKg += e.value * table.molarMass(e.name) / 1000.0;
    const double perKgSolution = 1.0 / (1.0 + soluteKg);
    const std::pair<ConcentUnit, double> units[] = {  // and the factor from mol/kgw, without the molar mass
        {MolPerKgw, 1.0}, {MmolPerKgw, 1000.0}, {MgPerKg, 1000.0 * perKgSolution},
        {MgPerL, 1000.0 * perKgSolution * density}, {MmolPerL, 1000.0 * perKgSolution * density}};
    for (const auto& [unit, factor] : units) {
        Input input = analysis({}, unit);
        for (const NameValue& e : brine) {
            const bool byMass = unit == MgPerKg || unit == MgPerL;
            input.elements.push_back({e.name, e.value * factor * (byMass ? table.molarMass(e.name) : 1.0)});
        }
        input.density = density;
        const ProcessedInput processed = processInput(input, embeddedModel());
        for (std::size_t i = 0; i < brine.size(); ++i)
            EXPECT_NEAR(processed.totals[i + 2], brine[i].value, 1e-13 * brine[i].value) << brine[i].name << " unit " << unit;
    }
}

// The conversion sums are taken once per list; each element must still come out as the
// one-element conversion gives it, bit for bit, in every unit and also with repeated elements.
TEST(ProcessInput, TotalsEqualTheConversionOfEachElementBitForBit) {
    const std::vector<NameValue> brine = {{"Na", 11500.0}, {"Ca", 1430.5}, {"Cl", 21200.25}, {"S(6)", 310.0},
                                          {"C", 122.0},    {"K", 395.0},   {"Mg", 1290.75}};
    const ElementTable& table = embeddedModel().elementTable();
    for (ConcentUnit unit : {MolPerKgw, MmolPerKgw, MmolPerL, MgPerL, MgPerKg}) {
        Input input = analysis(brine, unit);
        input.density = 1.0437;  // g/cm3
        const ProcessedInput processed = processInput(input, embeddedModel());
        for (std::size_t i = 0; i < brine.size(); ++i) {
            const double expected = toMolality(input.elements, i, input.density, table);
            EXPECT_EQ(std::memcmp(&processed.totals[i + 2], &expected, sizeof expected), 0)
                << brine[i].name << " unit " << unit;
        }
    }
}

// Which lookup fails first when several names are unknown: the first element, then the gases,
// then the other elements, as when every element is compared with every gas.
TEST(ProcessInput, UnknownNamesFailInListOrder) {
    const auto unknownUnit = static_cast<ConcentUnit>(9);  // refused only when converting
    const struct {
        std::vector<NameValue> elements, gases;
        ConcentUnit unit;
        const char* message;
    } cases[] = {
        {{{"Xx", 1.0}, {"Na", 1.0}}, {{"Yy", 0.1}}, MolPerKgw, "Element name not found."},
        {{{"Na", 1.0}, {"Xx", 1.0}}, {{"Yy", 0.1}}, MolPerKgw, "Gas name not found!"},
        {{{"Na", 1.0}, {"Xx", 1.0}}, {{"CO2", 0.1}}, MolPerKgw, "Element name not found."},
        {{}, {{"CO2", 0.1}, {"Yy", 0.1}}, MolPerKgw, "Gas name not found!"},
        // Every element's basis species is looked up before the first conversion meets the unit.
        {{{"Na", 1.0}, {"Xx", 1.0}}, {}, unknownUnit, "Element name not found."},
        {{{"Na", 1.0}, {"Cl", 1.0}}, {}, unknownUnit, "Concentration unit not found."},
    };
    for (const auto& c : cases) {
        Input input = analysis(c.elements, c.unit, c.gases);
        input.density = 1.0;  // g/cm3, so that no density is asked of the engine
        expectFailure<std::logic_error>(input, c.message);
    }
}

// Hostile lists: tens of thousands of entries are taken in one pass, give the same answers as
// short ones and leave nothing behind for the next analysis on the thread.
TEST(ProcessInput, LongListsBehaveAsShortOnes) {
    constexpr std::size_t kEntries = 20000;
    Input repeated = analysis(std::vector<NameValue>(kEntries, {"Na", 1.0}), MgPerL);
    repeated.density = 1.02;
    expectFailure<std::logic_error>(repeated, "A repeated basis found.");

    // One element and its gas given many times: every amount joins the element's total.
    const ProcessedInput merged = processInput(
        analysis({{"C", 0.5}}, MolPerKgw, std::vector<NameValue>(kEntries, {"CO2", 1e-4})), embeddedModel());
    EXPECT_EQ(merged.basisNames, (std::vector<std::string>{"H2O", "H+", "CO3-2"}));
    EXPECT_NEAR(merged.totals[2], 0.5 + kEntries * 1e-4, 1e-12);
    EXPECT_EQ(merged.totals.size(), kEntries + 2);  // one total per entry, less the one shared name

    const ProcessedInput after = processInput(analysis({{"Na", 0.1}}, MolPerKgw, {{"CO2", 0.2}}), embeddedModel());
    EXPECT_EQ(after.basisNames, (std::vector<std::string>{"H2O", "H+", "Na+", "CO3-2"}));
    EXPECT_EQ(after.totals[3], 0.2);
}
