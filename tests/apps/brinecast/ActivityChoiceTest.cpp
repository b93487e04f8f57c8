#include "brinecast/calculation/ActivityChoice.h"
#include "brinecast/readers/InputError.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace bc = korvane::Brinecast;
using korvane::Brinecast::cli::ActivityChoice;

namespace {

bc::Input brine(std::vector<bc::NameValue> elements) {
    bc::Input input;
    input.elements.assign(elements, bc::MolPerKgw);
    return input;
}

}  // namespace

TEST(ActivityChoice, WordsNameEveryChoiceInAnyCaseAndAnUnknownOneIsRefusedWithTheChoices) {
    for (const char* word : {"auto", "ideal", "davies", "debye-huckel", "pitzer"}) {
        EXPECT_EQ(ActivityChoice::named(word).word(), word);
        std::string upper = word;
        for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        EXPECT_EQ(ActivityChoice::named(upper).word(), word);
    }
    EXPECT_TRUE(ActivityChoice().automatic());
    try {
        ActivityChoice::named("debye");
        ADD_FAILURE() << "accepted";
    } catch (const korvane::Brinecast::cli::InputError& e) {
        EXPECT_STREQ(e.what(), "Unknown activity model \"debye\": use auto, debye-huckel, pitzer, davies or ideal.");
    }
}

// Auto takes Pitzer where it covers the brine and says why not elsewhere; a fixed Pitzer keeps
// the minerals it cannot list, and any other fixed model is left alone.
TEST(ActivityChoice, DecidesPerBrineAndNamesWhatPitzerLacks) {
    const bc::Input plain = brine({{"Na", 1.0}, {"Cl", 1.0}, {"Sr", 0.01}, {"C", 0.002}});
    const bc::Input zinc = brine({{"Na", 1.0}, {"Cl", 1.0}, {"Zn", 0.001}});
    struct Case {
        ActivityChoice choice;
        const bc::Input* input;
        bc::ActivityModel model;
        std::vector<std::string> gaps, minerals;
    };
    const std::vector<Case> cases{
        {ActivityChoice(), &plain, bc::ActivityModel::Pitzer, {}, {"Strontianite"}},
        {ActivityChoice(), &zinc, bc::ActivityModel::DebyeHuckel, {"Zn"}, {}},
        {bc::ActivityModel::Pitzer, &plain, bc::ActivityModel::Pitzer, {}, {"Strontianite"}},
        {bc::ActivityModel::Davies, &zinc, bc::ActivityModel::Davies, {}, {}},
    };
    for (const Case& c : cases) {
        const ActivityChoice::Decision d = c.choice.decide(*c.input);
        EXPECT_EQ(d.model, c.model) << c.choice.word();
        EXPECT_EQ(d.automatic, c.choice.automatic());
        EXPECT_EQ(d.pitzerGaps, c.gaps) << c.choice.word();
        EXPECT_EQ(d.mineralsNotAvailable, c.minerals) << c.choice.word();
    }
}
