#include "database/SpeciesModel.h"

#include <korvane/KorvaneError.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

using korvane::KorvaneError;
using korvane::Brinecast::ReactionData;
using korvane::Brinecast::SpeciesModel;
using testing::HasSubstr;
using testing::StrEq;
using testing::ThrowsMessage;
using Stoich = std::unordered_map<std::string, double>;

TEST(SpeciesModel, FieldsOfOtherTypesKeepTheirDefaultsAndUnknownKeysAreSkipped) {
    const SpeciesModel model(R"([
        {"stoich": {"H2O": -3, "Fe+2": -1.0, "Fe(OH)3-": 1}, "log_k": "-31.0", "delta_h": null, "analytical": 5,
         "dw": [1], "Vm": [1, 2.5, -3e-2], "gamma": [9.0, 0], "Gamma": [1, 1], "ref": "x"},
        {"log_k": 2, "delta_h": -1, "analytical": [], "gamma": [1, 2, 3]}
    ])");
    ASSERT_EQ(model.reactions.size(), 2u);
    const ReactionData& first = model.reactions[0].data;
    EXPECT_EQ(first.stoich, (Stoich{{"H2O", -3.0}, {"Fe+2", -1.0}, {"Fe(OH)3-", 1.0}}));
    EXPECT_TRUE(first.logK == 0.0 && first.deltaH == 0.0 && first.analytical.empty());
    EXPECT_EQ(first.dw, std::vector<double>{1.0});
    EXPECT_EQ(first.Vm, (std::vector<double>{1.0, 2.5, -3e-2}));
    EXPECT_EQ(first.gamma, (std::vector<double>{9.0, 0.0}));
    const ReactionData& second = model.reactions[1].data;
    EXPECT_TRUE(second.stoich.empty() && second.Vm.empty());
    EXPECT_EQ(second.logK, 2.0);
    EXPECT_EQ(second.deltaH, -1.0);
    EXPECT_EQ(second.gamma.size(), 3u);  // any length is carried as written
}

TEST(SpeciesModel, StringParseErrorsNameLineAndByteColumn) {
    const std::pair<const char*, const char*> cases[] = {
        // A comma before the closing bracket on line 3.
        {"[\n {\"log_k\": 1},\n]", "Error parsing JSON String at line 3or a few lines before that., column 1, Error Code=3"},
        {"[\n  {\"a\": 1}\n  {\"b\": 2}\n]", "Error parsing JSON String at line 3or a few lines before that., column 3, Error Code=7"},
        {"", "Error parsing JSON String at line 1or a few lines before that., column 1, Error Code=1"},
        // Carriage return and tab are columns; the two-byte letters count two columns each.
        {"[\r\n\t{\"log_k\": tru}]", "Error parsing JSON String at line 2or a few lines before that., column 15, Error Code=3"},
        {"[\"\xc3\xa9\xc3\xa9\", x]", "Error parsing JSON String at line 1or a few lines before that., column 10, Error Code=3"},
        {"[] []", "Error parsing JSON String at line 1or a few lines before that., column 4, Error Code=2"},
    };
    for (const auto& [json, message] : cases)
        EXPECT_THAT([json = json] { SpeciesModel model(json); }, ThrowsMessage<KorvaneError>(StrEq(message))) << json;
}

TEST(SpeciesModel, FileLoadingAndItsErrors) {
    const std::string data = BRINECAST_DATABASE_TEST_DATA;
    const auto records = SpeciesModel::loadReactionsFromFile(data + "/one-reaction.json");
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].data.stoich, (Stoich{{"Cl-", 1.0}}));
    EXPECT_EQ(records[0].data.logK, 0.5);
    EXPECT_THAT([&] { SpeciesModel::loadReactionsFromFile(data + "/malformed-reactions.json"); },
                ThrowsMessage<std::logic_error>(StrEq("Error parsing JSON file: Error character offset =17, Error Code=3")));
    EXPECT_THAT([&] { SpeciesModel::loadReactionsFromFile(data + "/none.json"); },
                ThrowsMessage<std::logic_error>(StrEq("Failed to open file:" + data + "/none.json")));
}

TEST(SpeciesModel, DataOutsideTheRecordFormatIsRefusedByName) {
    const std::pair<const char*, const char*> cases[] = {
        {R"({"log_k": 1})", "this one is a JSON object"},
        {R"([{"log_k": 1}, [1, 2]])", "Reaction record 2 is a JSON array"},
        {R"([{"stoich": [1]}])", "\"stoich\" is a JSON array"},
        {R"([{"stoich": {"H+": "1"}}])", "\"stoich\" holds a JSON string"},
        {R"([{}, {}, {"dw": [1, null]}])", "Reaction record 3: \"dw\" holds a JSON null"},
    };
    for (const auto& [json, mentions] : cases)
        EXPECT_THAT([json = json] { SpeciesModel model(json); }, ThrowsMessage<std::logic_error>(HasSubstr(mentions))) << json;
}
