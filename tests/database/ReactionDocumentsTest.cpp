// The embedded reaction documents against the reference tables: a slip in a coefficient would
// otherwise pass unnoticed into every speciation.
#include "database/SpeciesModel.h"

#include "database/TsvTable.h"

#include <rapidjson/document.h>

#include <gtest/gtest.h>

#include <cctype>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

using korvane::Brinecast::ReactionData;
using korvane::Brinecast::SpeciesModel;
using Stoich = std::unordered_map<std::string, double>;

namespace {

constexpr std::size_t kMasterSpecies = 27;
constexpr std::size_t kFirstRecordOfDocument2 = 54;

/// The coefficients a reaction text stands for: reactants negative, products positive, "X = X" {X: 1}.
Stoich stoichOf(const std::string& reaction) {
    const std::size_t equals = reaction.find(" = ");
    const std::string left = reaction.substr(0, equals);
    const std::string right = reaction.substr(equals + 3);
    if (left == right) return {{left, 1.0}};
    Stoich stoich;
    auto addSide = [&stoich](std::string side, double sign) {
        side += " + ";
        for (std::size_t start = 0, plus; (plus = side.find(" + ", start)) != std::string::npos; start = plus + 3) {
            std::string term = side.substr(start, plus - start);
            std::size_t digits = 0;
            while (digits < term.size() && std::isdigit(static_cast<unsigned char>(term[digits]))) ++digits;
            const double count = digits ? std::stod(term.substr(0, digits)) : 1.0;
            while (digits < term.size() && term[digits] == ' ') ++digits;
            stoich[term.substr(digits)] += sign * count;
        }
    };
    addSide(left, -1.0);
    addSide(right, 1.0);
    return stoich;
}

/// RapidJSON's default number reading may land an ulp away from the nearest double.
void expectSameNumbers(const std::vector<double>& actual, const std::vector<double>& expected, const std::string& what) {
    ASSERT_EQ(actual.size(), expected.size()) << what;
    for (std::size_t i = 0; i < expected.size(); ++i) EXPECT_DOUBLE_EQ(actual[i], expected[i]) << what << " [" << i << "]";
}

std::vector<std::string> reactionTexts(const std::vector<std::string>& documents) {
    std::vector<std::string> texts;
    for (const std::string& json : documents) {
        rapidjson::Document document;
        document.Parse(json.c_str());
        for (const auto& record : document.GetArray()) texts.emplace_back(record["reaction"].GetString());
    }
    return texts;
}

class ReactionDocuments : public ::testing::Test {
protected:
    const SpeciesModel model;
    const std::vector<brinecast_test::TsvRow> table =
        brinecast_test::readTsv(BRINECAST_DATABASE_TEST_DATA "/reaction_records.tsv");
    const std::vector<brinecast_test::TsvRow> transport = brinecast_test::readTsv(BRINECAST_DW_VM_TABLE);
};

}  // namespace

TEST_F(ReactionDocuments, RecordsFollowTheTableInOrderWithEveryLogKInput) {
    ASSERT_EQ(model.reactions.size(), table.size());
    const std::vector<std::string> texts = reactionTexts(model.elementTable().documents());
    ASSERT_EQ(texts.size(), table.size());
    for (std::size_t i = 0; i < table.size(); ++i) {
        const auto& row = table[i];
        const ReactionData& data = model.reactions[i].data;
        const std::string& reaction = row.at("reaction");
        EXPECT_EQ(texts[i], reaction) << "record " << i + 1;
        EXPECT_EQ(data.stoich, stoichOf(reaction)) << reaction;
        EXPECT_DOUBLE_EQ(data.logK, row.at("log_k").empty() ? 0.0 : std::stod(row.at("log_k"))) << reaction;
        EXPECT_DOUBLE_EQ(data.deltaH, row.at("delta_h").empty() ? 0.0 : std::stod(row.at("delta_h"))) << reaction;
        expectSameNumbers(data.analytical, brinecast_test::numbers(row.at("analytical")), reaction + " analytical");
        expectSameNumbers(data.gamma, brinecast_test::numbers(row.at("gamma")), reaction + " gamma");
    }
}

TEST_F(ReactionDocuments, DocumentsSplitFiftyFourAndTwentyEight) {
    const auto& documents = model.elementTable().documents();
    ASSERT_EQ(documents.size(), 2u);
    EXPECT_EQ(SpeciesModel::loadReactionsFromString(documents[0]).size(), 54u);
    EXPECT_EQ(SpeciesModel::loadReactionsFromString(documents[1]).size(), 28u);
}

TEST_F(ReactionDocuments, TransportAndMolarVolumeListsMatchTheirTable) {
    ASSERT_EQ(transport.size(), model.reactions.size());
    std::map<std::string, std::pair<int, int>> presentPerDocument;  // document -> (dw, Vm) records
    for (std::size_t i = 0; i < transport.size(); ++i) {
        const auto& row = transport[i];
        const ReactionData& data = model.reactions[i].data;
        EXPECT_EQ(row.at("reaction"), table[i].at("reaction")) << "the two reference tables disagree on order";
        expectSameNumbers(data.dw, brinecast_test::numbers(row.at("dw")), row.at("reaction") + " dw");
        expectSameNumbers(data.Vm, brinecast_test::numbers(row.at("Vm")), row.at("reaction") + " Vm");
        presentPerDocument[row.at("document")].first += data.dw.empty() ? 0 : 1;
        presentPerDocument[row.at("document")].second += data.Vm.empty() ? 0 : 1;
    }
    EXPECT_EQ(presentPerDocument["1"], std::make_pair(39, 38));
    EXPECT_EQ(presentPerDocument["2"], std::make_pair(0, 9));
}

TEST_F(ReactionDocuments, EachProductRecordFormsExactlyOneNewSpeciesFromMasters) {
    std::set<std::string> masters;
    for (std::size_t i = 0; i < kMasterSpecies; ++i) {
        ASSERT_EQ(model.reactions[i].data.stoich.size(), 1u) << "record " << i + 1 << " is not a master record";
        masters.insert(model.reactions[i].data.stoich.begin()->first);
    }
    std::set<std::string> formed;
    for (std::size_t i = kMasterSpecies; i < model.reactions.size(); ++i) {
        const ReactionData& data = model.reactions[i].data;
        std::vector<std::string> newSpecies;
        for (const auto& [species, coefficient] : data.stoich) {
            if (coefficient > 0.0 && masters.count(species) == 0) newSpecies.push_back(species);
            if (coefficient < 0.0 && i >= kFirstRecordOfDocument2) {
                EXPECT_EQ(masters.count(species), 1u) << species << " reacts in document 2 but is no master species";
            }
        }
        ASSERT_EQ(newSpecies.size(), 1u) << "record " << i + 1;
        EXPECT_TRUE(formed.insert(newSpecies[0]).second) << newSpecies[0] << " is formed twice";
        EXPECT_TRUE(data.logK != 0.0 || !data.analytical.empty()) << newSpecies[0] << " has no log K";
        EXPECT_TRUE(data.gamma.empty() || data.gamma.size() == 2u) << newSpecies[0];
    }
}

TEST_F(ReactionDocuments, ReferenceOnlyKeysAreSkipped) {
    const ReactionData& sodium = model.reactions[5].data;
    ASSERT_EQ(sodium.stoich.count("Na+"), 1u);
    EXPECT_EQ(sodium.gamma, (std::vector<double>{4.0, 0.075}));  // not "gamma2" [4.08, 0.082]
    EXPECT_NE(model.elementTable().documents()[0].find("\"gamma2\""), std::string::npos);
}
