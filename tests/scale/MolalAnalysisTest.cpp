#include "SharedSpeciator.h"
#include "BrineCatalog.h"

#include <korvane/Speciator.h>

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <string>

namespace bc = korvane::Brinecast;

namespace {

using brinecast_test::speciator;

bc::SolveOptions debyeHuckel() {
    bc::SolveOptions options;
    options.activity = bc::ActivityModel::DebyeHuckel;
    return options;
}

/// A formation water in mg/L with its density given, so no engine is needed.
bc::Input perLitre() {
    bc::Input water;
    water.dllPath = "/no/engine/needed";
    water.temperature = 333.15;  // K
    water.pressure = 5e6;        // Pa
    water.density = 1.07;        // g/cm3
    water.elements.assign({{"Na", 29370}, {"K", 372}, {"Mg", 504}, {"Ca", 2809}, {"Sr", 574}, {"Ba", 252},
                           {"Cl", 52360}, {"C", 496}},
                          bc::MgPerL);
    water.gases.assign({{"CO2", 0.02}}, bc::MolPerKgw);
    return water;
}

}  // namespace

TEST(MolalAnalysis, SpeciatesAsTheAnalysisItCameFrom) {
    const bc::Input molal = speciator().molal(perLitre());
    EXPECT_EQ(molal.elements.unit, bc::MolPerKgw);
    EXPECT_EQ(molal.density, 1.07);
    const bc::Result original = speciator().speciate(perLitre(), debyeHuckel());
    const bc::Result converted = speciator().speciate(molal, debyeHuckel());
    EXPECT_EQ(converted.output.pH, original.output.pH);
    ASSERT_EQ(converted.minerals.size(), original.minerals.size());
    for (std::size_t m = 0; m < original.minerals.size(); ++m)
        EXPECT_EQ(converted.minerals[m].saturationIndex, original.minerals[m].saturationIndex);
}

TEST(MolalAnalysis, ProfileEndsAreSpeciationsAtThoseConditions) {
    const bc::ProfilePath path{393.15, 3e7, 313.15, 1e6, 4};  // reservoir to separator
    const auto profile = speciator().profile(perLitre(), path, debyeHuckel());
    ASSERT_EQ(profile.size(), 4u);
    bc::Input molal = speciator().molal(perLitre());
    const double ends[2][2] = {{393.15, 3e7}, {313.15, 1e6}};
    const bc::Result* points[] = {&profile.front(), &profile.back()};
    for (int e = 0; e < 2; ++e) {
        molal.temperature = ends[e][0], molal.pressure = ends[e][1];
        const bc::Result single = speciator().speciate(molal, debyeHuckel());
        EXPECT_EQ(points[e]->output.pH, single.output.pH);
        for (std::size_t m = 0; m < single.minerals.size(); ++m)
            EXPECT_EQ(points[e]->minerals[m].saturationIndex, single.minerals[m].saturationIndex);
    }
    // Calcite's solubility falls with temperature: the hot end is the more scaling one.
    EXPECT_GT(profile.front().minerals[0].saturationIndex, profile.back().minerals[0].saturationIndex);
}

TEST(MolalAnalysis, ProfileRefusesAPathItCannotFollow) {
    const struct {
        bc::ProfilePath path;
        const char* named;
    } bad[] = {{{393.15, 3e7, 313.15, 1e6, 1}, "1"},
               {{0.0, 3e7, 313.15, 1e6, 3}, "fromTemperature"},
               {{393.15, 3e7, 313.15, NAN, 3}, "toPressure"}};
    for (const auto& b : bad) {
        try {
            speciator().profile(perLitre(), b.path);
            ADD_FAILURE() << b.named;
        } catch (const std::invalid_argument& e) {
            EXPECT_NE(std::string(e.what()).find(b.named), std::string::npos) << e.what();
        }
    }
}
