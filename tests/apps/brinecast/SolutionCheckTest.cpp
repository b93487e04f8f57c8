#include "brinecast/readers/InputError.h"
#include "brinecast/readers/SolutionCheck.h"

#include <gtest/gtest.h>

namespace bc = korvane::Brinecast;
using korvane::Brinecast::cli::Analysis;
using korvane::Brinecast::cli::InputError;
using korvane::Brinecast::cli::SolutionCheck;

namespace {

// Molar masses of the element table, g/mol, as the library counts Na and Cl.
constexpr double kNa = 22.9898;
constexpr double kCl = 35.453;

Analysis brine(bc::ConcentUnit unit, double sodium, double chloride, double densityGcm3 = 0.0) {
    Analysis a;
    a.source = "lab.json";
    a.unit = unit;
    a.densityGcm3 = densityGcm3;
    a.elements = {{"Na", sodium}, {"Cl", chloride}};
    return a;
}

}  // namespace

// One brine, 1 mol NaCl in 1 kg of water at 1.04 g/cm3, written in every unit: the dissolved
// molality must come out 2 mol/kgw in each, or the limit would bite at different salinities.
TEST(SolutionCheck, DissolvedMolalityIsTheSameInEveryUnit) {
    const double densityGcm3 = 1.04;
    const double solutionKg = 1.0 + (kNa + kCl) / 1000.0;  // per kg of water
    const double litres = solutionKg / densityGcm3;
    const Analysis forms[] = {
        brine(bc::MolPerKgw, 1.0, 1.0),
        brine(bc::MmolPerKgw, 1000.0, 1000.0),
        brine(bc::MmolPerL, 1000.0 / litres, 1000.0 / litres),
        brine(bc::MgPerL, kNa * 1000.0 / litres, kCl * 1000.0 / litres),
        brine(bc::MgPerKg, kNa * 1000.0 / solutionKg, kCl * 1000.0 / solutionKg),
    };
    for (const Analysis& a : forms) {
        EXPECT_NEAR(SolutionCheck::dissolvedMolality(a, densityGcm3), 2.0, 1e-12) << a.unit;
    }
}

TEST(SolutionCheck, NonSolutionsAreRefusedAndSaturatedBrinesAccepted) {
    struct Case { Analysis analysis; const char* refusal; };  // "" when accepted
    const Case cases[] = {
        {brine(bc::MolPerKgw, 6.5, 6.5), ""},
        {brine(bc::MolPerKgw, 15.0, 15.0), ""},
        {brine(bc::MolPerKgw, 15.0, 15.01), "add up to 30.01 mol/kgw, more than the 30"},
        {brine(bc::MgPerKg, 1.2e5, 1.8e5), ""},
        {brine(bc::MgPerKg, 5e5, 4.99e5), "add up to 3.582e+04 mol/kgw"},
        {brine(bc::MgPerKg, 5e5, 5e5), "1e+06 mg/kg, not less than the 1000000 mg/kg"},
        {brine(bc::MgPerL, 1e6, 1e6), "weigh 2000 g per litre, not less than the 2000 g"},
        {brine(bc::MgPerL, 7e5, 6e5, 1.2), "weigh 1300 g per litre, not less than the 1200 g"},
        {brine(bc::MmolPerL, 1e308, 1e308), "weigh more than 1.8e+308 g per litre"},
        {brine(bc::MolPerKgw, 1.0, -1.0), "the amount of Cl is -1; amounts are finite"},
        {brine(bc::MgPerL, 100.0, 150.0, 2.5), "a density of 2.5 g/cm3, which no brine has"},
    };
    for (const Case& c : cases) {
        try {
            SolutionCheck::requireAmounts(c.analysis);
            EXPECT_STREQ(c.refusal, "") << "accepted";
        } catch (const InputError& e) {
            EXPECT_NE(std::string(e.what()).find(c.refusal), std::string::npos)
                << e.what() << "\nexpected: " << c.refusal;
            EXPECT_NE(std::string(c.refusal), "") << e.what();
        }
    }
}

// IAPWS-IF97, Table 35: the verification values of the saturation-pressure equation.
TEST(SolutionCheck, BoilingPressureIsWaters) {
    const std::pair<double, double> points[] = {{300.0, 0.353658941e-2}, {500.0, 0.263889776e1},
                                                {600.0, 0.123443146e2}};
    for (const auto& [temperatureK, pressureMPa] : points) {
        EXPECT_NEAR(SolutionCheck::boilingPressurePa(temperatureK), pressureMPa * 1e6,
                    pressureMPa * 1e6 * 1e-8) << temperatureK;
    }
}
