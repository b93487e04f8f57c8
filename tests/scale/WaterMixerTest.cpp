#include "SharedSpeciator.h"
#include "BrineCatalog.h"

#include <korvane/Speciator.h>

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <string>
#include <vector>

namespace bc = korvane::Brinecast;
using brinecast_test::molal;

namespace {

using brinecast_test::speciator;

/// A seawater-like and a barium-rich formation water, mol/kgw, at different temperatures.
bc::Input seawater() {
    bc::Input water = molal({{"Na", 0.486}, {"Mg", 0.0547}, {"Ca", 0.0107}, {"K", 0.0106}, {"Sr", 9.4e-5},
                             {"Cl", 0.566}, {"S(6)", 0.0293}, {"C", 2.1e-3}},
                            277.15);
    water.density = 1.0275;  // g/cm3
    return water;
}

bc::Input formationWater() {
    bc::Input water = molal({{"Na", 1.35}, {"K", 0.01}, {"Ca", 0.074}, {"Mg", 0.022}, {"Sr", 6.9e-3},
                             {"Ba", 1.9e-3}, {"Cl", 1.56}, {"C", 8.6e-3}},
                            368.15, {{"CO2", 0.01}});
    water.density = 1.06;  // g/cm3
    return water;
}

bc::SolveOptions debyeHuckel() {
    bc::SolveOptions options;
    options.activity = bc::ActivityModel::DebyeHuckel;
    return options;
}

}  // namespace

TEST(WaterMixer, EndsOfASweepAreTheEndMembersThemselves) {
    for (bc::MixingBasis basis : {bc::MixingBasis::Volume, bc::MixingBasis::Mass}) {
        const auto sweep = speciator().mixingSweep(seawater(), formationWater(), 5, {basis}, debyeHuckel());
        ASSERT_EQ(sweep.size(), 5u);
        const bc::Result ends[] = {speciator().speciate(seawater(), debyeHuckel()),
                                   speciator().speciate(formationWater(), debyeHuckel())};
        const bc::Result* mixed[] = {&sweep.front(), &sweep.back()};
        for (int e = 0; e < 2; ++e) {
            EXPECT_EQ(mixed[e]->output.pH, ends[e].output.pH);
            ASSERT_EQ(mixed[e]->minerals.size(), ends[e].minerals.size());
            for (std::size_t m = 0; m < ends[e].minerals.size(); ++m) {
                EXPECT_EQ(mixed[e]->minerals[m].name, ends[e].minerals[m].name);
                EXPECT_NEAR(mixed[e]->minerals[m].saturationIndex, ends[e].minerals[m].saturationIndex, 1e-12);
            }
        }
        // Barite appears only in the mixes: neither water holds both barium and sulfate.
        EXPECT_GT(sweep[2].minerals.front().saturationIndex, 0.5);
        EXPECT_EQ(sweep[2].minerals.front().name, "Barite");
    }
}

TEST(WaterMixer, VolumeAndMassAgreeForWatersOfOneDensity) {
    bc::Input first = seawater(), second = formationWater();
    first.density = second.density = 1.05;  // g/cm3
    for (double fraction : {0.1, 0.5, 0.9}) {
        const bc::Input byVolume = speciator().mix(first, second, fraction, {bc::MixingBasis::Volume});
        const bc::Input byMass = speciator().mix(first, second, fraction, {bc::MixingBasis::Mass});
        for (std::size_t i = 0; i < byVolume.elements.values.size(); ++i)
            EXPECT_NEAR(byVolume.elements.values[i].value, byMass.elements.values[i].value,
                        1e-14 * byMass.elements.values[i].value);
        EXPECT_NEAR(byVolume.temperature, byMass.temperature, 1e-12);
    }
    // With the densities apart, a litre of the denser water carries more of it.
    const double volumeBa = speciator().mix(seawater(), formationWater(), 0.5, {bc::MixingBasis::Volume}).elements.values[8].value;
    const double massBa = speciator().mix(seawater(), formationWater(), 0.5, {bc::MixingBasis::Mass}).elements.values[8].value;
    EXPECT_GT(volumeBa, massBa);
}

TEST(WaterMixer, HalfAndHalfByMassOfBrineAndPureWater) {
    // 0.5 kg of a 1 mol/kgw NaCl brine holds 0.5 / 1.0584428 kg of water; with 0.5 kg of pure water
    // its NaCl is spread over both.
    const bc::Input brine = molal({{"Na", 1.0}, {"Cl", 1.0}}, 348.15);
    const bc::Input pure = molal({{"Na", 0.0}, {"Cl", 0.0}}, 298.15);
    bc::MixingOptions byMass{bc::MixingBasis::Mass};
    const bc::Input mixed = speciator().mix(brine, pure, 0.5, byMass);
    const double brineWater = 0.5 / (1.0 + (22.9898 + 35.453) / 1000.0);  // kg
    EXPECT_NEAR(mixed.elements.values[0].value, brineWater / (brineWater + 0.5), 1e-15);
    EXPECT_DOUBLE_EQ(mixed.temperature, 323.15);  // mean by mass of solution
    EXPECT_DOUBLE_EQ(mixed.pressure, 101325.0);   // the first water's
    byMass.temperature = 310.0, byMass.pressure = 2e6;
    const bc::Input given = speciator().mix(brine, pure, 0.5, byMass);
    EXPECT_EQ(given.temperature, 310.0);
    EXPECT_EQ(given.pressure, 2e6);
}

TEST(WaterMixer, RefusesFractionsAndStepsItCannotMix) {
    const struct {
        double fraction;
        const char* named;
    } bad[] = {{-0.1, "-0.1"}, {1.5, "1.5"}, {NAN, "nan"}};
    for (const auto& b : bad) {
        try {
            speciator().mix(seawater(), formationWater(), b.fraction);
            ADD_FAILURE() << b.named;
        } catch (const std::invalid_argument& e) {
            EXPECT_NE(std::string(e.what()).find(b.named), std::string::npos) << e.what();
        }
    }
    EXPECT_THROW(speciator().mixingSweep(seawater(), formationWater(), 1), std::invalid_argument);
}
