#include "brinecast/calculation/DissolvedSolids.h"

#include <gtest/gtest.h>

#include <cmath>

namespace bc = korvane::Brinecast;
using korvane::Brinecast::cli::Analysis;
using korvane::Brinecast::cli::DissolvedSolids;

namespace {

Analysis analysis(bc::ConcentUnit unit, std::vector<bc::NameValue> elements) {
    Analysis a;
    a.unit = unit;
    a.elements = std::move(elements);
    return a;
}

}  // namespace

// Forties formation water as examples/north-sea-formation-water.json reports it: its TDS is the
// plain sum of the mg/L figures, bicarbonate counted as the HCO3- mass it is reported as.
TEST(DissolvedSolids, AMassAnalysisSumsItsReportedIonMasses) {
    const Analysis a = analysis(bc::MgPerL, {{"Na", 29370}, {"K", 372}, {"Mg", 504}, {"Ca", 2809},
                                             {"Sr", 574}, {"Ba", 252}, {"Cl", 52360}, {"C", 496}});
    const DissolvedSolids s = DissolvedSolids::of(a, 1.06);
    EXPECT_DOUBLE_EQ(s.mgPerL, 86737.0);
    EXPECT_DOUBLE_EQ(s.mgPerKg, 86737.0 / 1.06);
    EXPECT_DOUBLE_EQ(s.kgWaterPerL, 1.06 - 0.086737);
    // Without a density, a per-litre analysis has no per-kg figure and no water per litre.
    const DissolvedSolids unknown = DissolvedSolids::of(a, 0.0);
    EXPECT_DOUBLE_EQ(unknown.mgPerL, 86737.0);
    EXPECT_TRUE(std::isnan(unknown.mgPerKg));
    EXPECT_TRUE(std::isnan(unknown.kgWaterPerL));
}

// One brine, 1 mol/kgw NaCl and 10 mmol/kgw Na2SO4, written in every library unit with a density
// of 1.04 g/cm3: 60364.48 mg per kg of water, so 60364.48 / 1.06036448 mg/kg of solution.
TEST(DissolvedSolids, EveryUnitGivesTheSameSolids) {
    const double perKgWater = 1020.0 * 22.9898 + 1000.0 * 35.453 + 10.0 * 96.064;  // mg/kgw
    const double perKg = perKgWater / (1.0 + perKgWater / 1e6);
    const double density = 1.04;
    const double perL = perKg * density;
    const double kgwPerL = density - perL / 1e6;
    const Analysis cases[] = {
        analysis(bc::MolPerKgw, {{"Na", 1.02}, {"Cl", 1.0}, {"S(6)", 0.01}}),
        analysis(bc::MmolPerKgw, {{"Na", 1020.0}, {"Cl", 1000.0}, {"S(6)", 10.0}}),
        analysis(bc::MgPerKg, {{"Na", 1020.0 * 22.9898 * perKg / perKgWater}, {"Cl", 1000.0 * 35.453 * perKg / perKgWater},
                               {"S(6)", 10.0 * 96.064 * perKg / perKgWater}}),
        analysis(bc::MmolPerL, {{"Na", 1020.0 * kgwPerL}, {"Cl", 1000.0 * kgwPerL}, {"S(6)", 10.0 * kgwPerL}}),
    };
    for (const Analysis& a : cases) {
        SCOPED_TRACE(a.unit);
        const DissolvedSolids s = DissolvedSolids::of(a, density);
        EXPECT_NEAR(s.mgPerKg, perKg, 1e-9 * perKg);
        EXPECT_NEAR(s.mgPerL, perL, 1e-9 * perL);
        EXPECT_NEAR(s.kgWaterPerL, kgwPerL, 1e-12);
        // 2 meq of charge per L of solution or per kg of solution is more per kg of water.
        EXPECT_NEAR(s.perKgWater(2e-3, bc::MmolPerL), 2e-3 / kgwPerL, 1e-15);
        EXPECT_NEAR(s.perKgWater(2e-3, bc::MgPerKg), 2e-3 / (1.0 - perKg / 1e6), 1e-15);
        EXPECT_EQ(s.perKgWater(2e-3, bc::MolPerKgw), 2e-3);
    }
}
