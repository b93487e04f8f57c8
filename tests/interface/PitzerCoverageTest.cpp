#include "RandomBrines.h"

#include <korvane/Brinecast.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

using namespace korvane::Brinecast;

namespace {

SolveOptions withModel(ActivityModel activity) {
    SolveOptions options;
    options.activity = activity;
    return options;
}

std::vector<std::string> mineralNames(const Result& result) {
    std::vector<std::string> names;
    for (const MineralSaturation& mineral : result.minerals) names.push_back(mineral.name);
    return names;
}

}  // namespace

// The query and the Pitzer calculation share one rule: a random brine is covered exactly when
// Pitzer accepts it, an uncovered one is refused naming every gap, and the missing minerals are
// those the Debye–Hückel result lists beyond the Pitzer result (or beyond Pitzer's whole list).
TEST(PitzerCoverage, AgreesWithWhatPitzerAcceptsAndWhichMineralsEachModelLists) {
    const Speciator speciator;
    const std::vector<std::string> pitzerMinerals{"Barite",    "Celestite", "Calcite", "Aragonite",
                                                  "Anhydrite", "Gypsum",    "Halite"};
    int covered = 0, refused = 0;
    for (const Input& input : brinecast_test::randomBrines(120, 11)) {
        const PitzerCoverage coverage = pitzerCoverage(input);
        std::vector<std::string> beyond = mineralNames(speciator.speciate(input, withModel(ActivityModel::DebyeHuckel)));
        if (coverage.covered()) {
            const std::vector<std::string> pitzer = mineralNames(speciator.speciate(input, withModel(ActivityModel::Pitzer)));
            beyond.erase(std::remove_if(beyond.begin(), beyond.end(), [&](const std::string& name) {
                             return std::find(pitzer.begin(), pitzer.end(), name) != pitzer.end();
                         }), beyond.end());
            ++covered;
        } else {
            try {
                speciator.speciate(input, withModel(ActivityModel::Pitzer));
                ADD_FAILURE() << "Pitzer accepted a brine the query calls uncovered";
            } catch (const std::invalid_argument& e) {
                for (const std::string& gap : coverage.missingComponents)
                    EXPECT_NE(std::string(e.what()).find(gap), std::string::npos) << gap << " / " << e.what();
            }
            beyond.erase(std::remove_if(beyond.begin(), beyond.end(), [&](const std::string& name) {
                             return std::find(pitzerMinerals.begin(), pitzerMinerals.end(), name) != pitzerMinerals.end();
                         }), beyond.end());
            ++refused;
        }
        EXPECT_EQ(coverage.missingMinerals, beyond);
    }
    EXPECT_GT(covered, 10);
    EXPECT_GT(refused, 10);
}

TEST(PitzerCoverage, NamesEachGapOnceAndIgnoresZeroAndUnknownAmounts) {
    struct Case {
        std::vector<NameValue> elements, gases;
        std::vector<std::string> components, minerals;
    };
    const std::vector<Case> cases{
        {{{"Na", 1.0}, {"Cl", 1.0}}, {}, {}, {}},
        {{{"Na", 1.0}, {"Zn", 0.0}, {"Unobtainium", 1.0}}, {}, {}, {}},
        {{{"Zn", 1e-4}, {"C", 1e-3}, {"Cl", 1.0}}, {}, {"Zn"}, {"Smithsonite"}},
        {{{"Fe(+2)", 1e-4}, {"Cl", 1.0}}, {{"CO2", 1e-3}}, {"Fe(+2) together with C"}, {"Siderite"}},
        {{{"Fe(+2)", 1e-4}, {"Ca", 1e-2}}, {{"H2S", 1e-3}}, {"S(-2)", "Fe(+2) together with S(-2)"}, {"Mackinawite"}},
        {{{"Sr", 1e-3}, {"Ba", 1e-4}, {"C", 1e-3}}, {}, {}, {"Strontianite", "Witherite"}},
    };
    for (const Case& c : cases) {
        Input input;
        input.elements.assign(c.elements, ConcentUnit::MolPerKgw);
        input.gases.assign(c.gases, ConcentUnit::MolPerKgw);
        const PitzerCoverage coverage = pitzerCoverage(input);
        EXPECT_EQ(coverage.missingComponents, c.components) << c.elements.front().name;
        EXPECT_EQ(coverage.missingMinerals, c.minerals) << c.elements.front().name;
        EXPECT_EQ(coverage.covered(), c.components.empty());
    }
}
