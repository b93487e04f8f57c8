// Per-litre analyses whose density comes from the shipped reference engine, which the process-wide
// bridge keeps loaded: a process of its own.
#include "database/SpeciesModel.h"
#include "engine/ProcessedInput.h"

#include <korvane/KorvaneError.h>

#include <gtest/gtest.h>

using namespace korvane::Brinecast;

namespace {
Input perLitre(std::vector<NameValue> elements, int unit) {
    Input input;
    input.dllPath = BRINECAST_REFERENCE_ENGINE_DIR;
    input.temperature = 298.15;
    input.elements.assign(elements, static_cast<ConcentUnit>(unit));
    return input;
}
}  // namespace

TEST(ProcessInput, SodiumChlorideGetsTheDensityOfItsSolution) {
    // 0.5 mol/L NaCl at 25 °C: 1.0177 g/cm3 and 0.506 mol/kgw, interpolated in the NaCl table of the
    // CRC Handbook ("Concentrative properties of aqueous solutions", 20 °C) and moved to 25 °C.
    const SpeciesModel model;
    const ProcessedInput processed = processInput(perLitre({{"Na", 500.0}, {"Cl", 500.0}}, MmolPerL), model);
    EXPECT_NEAR(processed.input.density, 1.0177, 0.002);
    EXPECT_NEAR(processed.totals[2], 0.506, 0.001);
}

TEST(ProcessInput, ComputedDensityActsAsIfTheCallerHadGivenIt) {
    const Input withoutDensity = perLitre({{"Na", 11000.0}, {"Ca", 400.0}, {"Cl", 17700.0}, {"C", 140.0}}, MgPerL);
    Input withDensity = withoutDensity;
    withDensity.density = processInput(withoutDensity, SpeciesModel()).input.density;
    EXPECT_EQ(run(withoutDensity).pH, run(withDensity).pH);
}

TEST(ProcessInput, UnitsTheDensityCalculatorCannotTakeAreRefusedThere) {
    for (int unit : {6, 7, -1}) {
        try {
            processInput(perLitre({{"Na", 100.0}}, unit), SpeciesModel());
            ADD_FAILURE() << "unit " << unit << ": no failure";
        } catch (const korvane::UnreacheableException& e) {
            EXPECT_STREQ(e.what(), "Density cannot be calculated for this unit.") << "unit " << unit;
        }
    }
}
