#include "database/SpeciesModel.h"

#include <korvane/KorvaneError.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

using korvane::KorvaneError;
using korvane::Brinecast::ReactionData;
using korvane::Brinecast::SpeciesModel;
using Stoich = std::unordered_map<std::string, double>;

namespace {

/// A file in the test's temporary directory, removed again when the test ends.
class TemporaryFile {
public:
    TemporaryFile(const std::string& name, const std::string& content)
        : path_(::testing::TempDir() + name) {
        std::ofstream(path_) << content;
    }
    ~TemporaryFile() { std::remove(path_.c_str()); }
    const std::string& path() const { return path_; }

private:
    std::string path_;
};

}  // namespace

TEST(SpeciesModel, EmbeddedDocumentsGiveEightyTwoRecordsInDocumentOrder) {
    const SpeciesModel model;
    ASSERT_EQ(model.reactions.size(), 82u);
    EXPECT_EQ(model.reactions.front().data.stoich, (Stoich{{"H+", 1.0}}));
    EXPECT_EQ(model.reactions.back().data.stoich, (Stoich{{"Zn+2", -1.0}, {"HS-", -3.0}, {"Zn(HS)3-", 1.0}}));
    for (const auto& record : model.reactions) EXPECT_TRUE(record.name.empty());
}

TEST(SpeciesModel, FieldsOfOtherTypesKeepTheirDefaultsAndUnknownKeysAreSkipped) {
    const SpeciesModel model(R"([
        {"stoich": {"H2O": -3, "Fe+2": -1.0, "Fe(OH)3-": 1, "H+": 3}, "log_k": "-31.0", "delta_h": null,
         "analytical": 5, "dw": [1], "Vm": [1, 2.5, -3e-2], "gamma": [9.0, 0], "Gamma": [1, 1], "ref": "x"},
        {"log_k": 2, "delta_h": -1, "analytical": [], "gamma": [1, 2, 3]},
        {}
    ])");
    ASSERT_EQ(model.reactions.size(), 3u);
    const ReactionData& first = model.reactions[0].data;
    EXPECT_EQ(first.stoich, (Stoich{{"H2O", -3.0}, {"Fe+2", -1.0}, {"Fe(OH)3-", 1.0}, {"H+", 3.0}}));
    EXPECT_EQ(first.logK, 0.0);
    EXPECT_EQ(first.deltaH, 0.0);
    EXPECT_TRUE(first.analytical.empty());
    EXPECT_EQ(first.dw, std::vector<double>{1.0});
    EXPECT_EQ(first.Vm, (std::vector<double>{1.0, 2.5, -3e-2}));
    EXPECT_EQ(first.gamma, (std::vector<double>{9.0, 0.0}));
    const ReactionData& second = model.reactions[1].data;
    EXPECT_TRUE(second.stoich.empty());
    EXPECT_EQ(second.logK, 2.0);
    EXPECT_EQ(second.deltaH, -1.0);
    EXPECT_EQ(second.gamma.size(), 3u);  // any length is carried as written
    const ReactionData empty = model.reactions[2].data;
    EXPECT_TRUE(empty.stoich.empty() && empty.analytical.empty() && empty.dw.empty() && empty.Vm.empty());
}

TEST(SpeciesModel, DatabasesAreConcatenatedInListOrder) {
    const auto records = SpeciesModel::loadReactionDatabases(
        {R"([{"log_k": 1}, {"log_k": 2}])", "[]", R"([{"log_k": 3}])"});
    ASSERT_EQ(records.size(), 3u);
    for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(records[i].data.logK, i + 1.0);
    EXPECT_TRUE(SpeciesModel::loadReactionDatabases({}).empty());
    EXPECT_TRUE(SpeciesModel("[]").reactions.empty());
}

TEST(SpeciesModel, StringParseErrorsNameLineAndByteColumn) {
    struct Case {
        const char* json;
        const char* message;
    };
    const Case cases[] = {
        // A comma before the closing bracket on line 3.
        {"[\n {\"log_k\": 1},\n]", "Error parsing JSON String at line 3or a few lines before that., column 1, Error Code=3"},
        {"[\n  {\"a\": 1}\n  {\"b\": 2}\n]", "Error parsing JSON String at line 3or a few lines before that., column 3, Error Code=7"},
        {"", "Error parsing JSON String at line 1or a few lines before that., column 1, Error Code=1"},
        // Carriage return and tab are columns; the two-byte letters count two columns each.
        {"[\r\n\t{\"log_k\": tru}]", "Error parsing JSON String at line 2or a few lines before that., column 15, Error Code=3"},
        {"[\"\xc3\xa9\xc3\xa9\", x]", "Error parsing JSON String at line 1or a few lines before that., column 10, Error Code=3"},
        {"[] []", "Error parsing JSON String at line 1or a few lines before that., column 4, Error Code=2"},
    };
    for (const Case& c : cases) {
        try {
            SpeciesModel model(c.json);
            ADD_FAILURE() << "no error for " << c.json;
        } catch (const KorvaneError& e) {
            EXPECT_STREQ(e.what(), c.message);
            EXPECT_EQ(e.codes.size(), 1u);
        }
    }
}

TEST(SpeciesModel, FileLoadingAndItsErrors) {
    const TemporaryFile good("species-model-good.json", "[{\"stoich\": {\"Cl-\": 1}, \"log_k\": 0.5}]");
    const auto records = SpeciesModel::loadReactionsFromFile(good.path());
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].data.stoich, (Stoich{{"Cl-", 1.0}}));
    EXPECT_EQ(records[0].data.logK, 0.5);

    const TemporaryFile bad("species-model-bad.json", "[\n {\"log_k\": 1},\n]");
    const std::string missing = ::testing::TempDir() + "no-such-reactions.json";
    const std::pair<std::string, std::string> cases[] = {
        {bad.path(), "Error parsing JSON file: Error character offset =17, Error Code=3"},
        {missing, "Failed to open file:" + missing},
    };
    for (const auto& [path, message] : cases) {
        try {
            SpeciesModel::loadReactionsFromFile(path);
            ADD_FAILURE() << "no error for " << path;
        } catch (const std::logic_error& e) {
            EXPECT_EQ(e.what(), message);
        }
    }
}

TEST(SpeciesModel, DataOutsideTheRecordFormatIsRefusedByName) {
    struct Case {
        const char* json;
        const char* mentions;
    };
    const Case cases[] = {
        {R"({"log_k": 1})", "this one is a JSON object"},
        {R"([{"log_k": 1}, [1, 2]])", "Reaction record 2 is a JSON array"},
        {R"([{"stoich": [1]}])", "\"stoich\" is a JSON array"},
        {R"([{"stoich": {"H+": "1"}}])", "\"stoich\" holds a JSON string"},
        {R"([{}, {}, {"dw": [1, null]}])", "Reaction record 3: \"dw\" holds a JSON null"},
    };
    for (const Case& c : cases) {
        try {
            SpeciesModel model(c.json);
            ADD_FAILURE() << "no error for " << c.json;
        } catch (const std::logic_error& e) {
            EXPECT_NE(std::string(e.what()).find(c.mentions), std::string::npos) << e.what();
        }
    }
}
