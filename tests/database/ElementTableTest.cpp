#include "database/ElementTable.h"

#include "database/TsvTable.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>

using korvane::Brinecast::ElementTable;

TEST(ElementTable, EveryElementEntryMatchesTheReferenceTable) {
    const ElementTable table;
    const auto rows = brinecast_test::readTsv(BRINECAST_DATABASE_TEST_DATA "/elements.tsv");
    ASSERT_EQ(table.elements().size(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const std::string& name = rows[i].at("element");
        EXPECT_EQ(table.elements()[i].name, name);
        EXPECT_EQ(table.elements()[i].elementMolarMass, std::stod(rows[i].at("elementMolarMass"))) << name;
        EXPECT_EQ(table.elements()[i].alkalinity, std::stod(rows[i].at("alkalinity"))) << name;
        EXPECT_EQ(table.basisSpecies(name), rows[i].at("basisSpecies"));
        EXPECT_EQ(table.ionName(name), rows[i].at("ionName"));
        // The molar mass lookup answers with the reported ion's mass, not the element's.
        EXPECT_EQ(table.molarMass(name), std::stod(rows[i].at("ionMolarMass"))) << name;
        EXPECT_EQ(table.labIonElement(rows[i].at("ionName")), name);
    }
}

TEST(ElementTable, LookupsAnswerOrNameTheirMissWithTheirOwnMessage) {
    const ElementTable table;
    const auto number = [](double value) {  // 10 digits: more than any entry of the table has
        char text[32];
        std::snprintf(text, sizeof text, "%.10g", value);
        return std::string(text);
    };
    const std::map<std::string, std::function<std::string(const std::string&)>> lookups = {
        {"basisSpecies", [&](const std::string& key) { return table.basisSpecies(key); }},
        {"ionName", [&](const std::string& key) { return table.ionName(key); }},
        {"molarMass", [&](const std::string& key) { return number(table.molarMass(key)); }},
        {"gasElement", [&](const std::string& key) { return table.gasElement(key); }},
        {"molecularWeight", [&](const std::string& key) { return number(table.molecularWeight(key)); }},
        {"labIonElement", [&](const std::string& key) { return table.labIonElement(key); }},
        {"countedChargeName", [&](const std::string& key) { return table.countedChargeName(key); }}};
    std::vector<ElementTable::NamePair> gases, spread;  // in table order
    for (const auto& row : brinecast_test::readTsv(BRINECAST_DATABASE_TEST_DATA "/element_lookups.tsv")) {
        const std::string& lookup = row.at("lookup");
        const std::string& key = row.at("key");
        try {
            EXPECT_EQ(lookups.at(lookup)(key), row.at("answer")) << lookup << "(\"" << key << "\")";
        } catch (const std::logic_error& e) {
            EXPECT_EQ(e.what(), row.at("error")) << lookup << "(\"" << key << "\")";
        }
        if (lookup == "gasElement" && row.at("error").empty()) gases.emplace_back(key, row.at("answer"));
        if (lookup == "countedChargeName" && row.at("error").empty()) spread.emplace_back(key, row.at("answer"));
    }
    EXPECT_EQ(table.gases(), gases);
    EXPECT_EQ(table.spreadChargeNames(), spread);
}
