#include "database/SpeciesModel.h"

#include <korvane/KorvaneError.h>

#include <gtest/gtest.h>

#include <string>

using korvane::Brinecast::ReactionData;
using korvane::Brinecast::SpeciesModel;

TEST(SpeciesModel, EmbeddedDocumentsGiveEightyTwoRecordsInDocumentOrder) {
    const SpeciesModel model;
    ASSERT_EQ(model.reactions.size(), 82u);
    EXPECT_EQ(model.reactions.front().data.stoich, (std::unordered_map<std::string, double>{{"H+", 1.0}}));
    EXPECT_EQ(model.reactions.back().data.stoich,
              (std::unordered_map<std::string, double>{{"Zn+2", -1.0}, {"HS-", -3.0}, {"Zn(HS)3-", 1.0}}));
    for (const auto& record : model.reactions) EXPECT_TRUE(record.name.empty());
    EXPECT_EQ(model.elementTable().ionName("C"), "HCO3-");
}
