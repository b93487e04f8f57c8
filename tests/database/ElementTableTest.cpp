#include "database/ElementTable.h"

#include "database/TsvTable.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>

using korvane::Brinecast::ElementTable;

namespace {

void expectLogicError(const std::function<void()>& lookup, const std::string& message, const std::string& key) {
    try {
        lookup();
        ADD_FAILURE() << "no error for " << key;
    } catch (const std::logic_error& e) {
        EXPECT_STREQ(e.what(), message.c_str()) << key;
    }
}

}  // namespace

TEST(ElementTable, EveryElementEntryMatchesTheReferenceTable) {
    const ElementTable table;
    const auto rows = brinecast_test::readTsv(BRINECAST_DATABASE_TEST_DATA "/elements.tsv");
    ASSERT_EQ(table.elements().size(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const auto& row = rows[i];
        const auto& entry = table.elements()[i];
        const std::string& name = row.at("element");
        EXPECT_EQ(entry.name, name);
        EXPECT_EQ(entry.elementMolarMass, std::stod(row.at("elementMolarMass"))) << name;
        EXPECT_EQ(entry.alkalinity, std::stod(row.at("alkalinity"))) << name;
        EXPECT_EQ(table.basisSpecies(name), row.at("basisSpecies"));
        EXPECT_EQ(table.ionName(name), row.at("ionName"));
        // The molar mass lookup answers with the reported ion's mass, not the element's.
        EXPECT_EQ(table.molarMass(name), std::stod(row.at("ionMolarMass"))) << name;
        EXPECT_EQ(table.labIonElement(row.at("ionName")), name);
    }
}

TEST(ElementTable, GasesMolecularWeightsAndSpreadChargeNames) {
    const ElementTable table;
    EXPECT_EQ(table.gasElement("CO2"), "C");
    EXPECT_EQ(table.gasElement("H2S"), "S(-2)");
    EXPECT_EQ(table.gases(), (std::vector<ElementTable::NamePair>{{"CO2", "C"}, {"H2S", "S(-2)"}}));
    EXPECT_EQ(table.molecularWeight("H2O"), 18.01528);
    EXPECT_EQ(table.molecularWeight("CO2"), 44.01);
    EXPECT_EQ(table.molecularWeight("H2S"), 34.082);
    const std::vector<ElementTable::NamePair> spread = {
        {"Na+", "Na+"},   {"Ca++", "Ca+2"},   {"Mg++", "Mg+2"},   {"K+", "K+"},
        {"Sr++", "Sr+2"}, {"Ba++", "Ba+2"},   {"Fe++", "Fe+2"},   {"Zn++", "Zn+2"},
        {"Cl-", "Cl-"},   {"SO4--", "SO4-2"}, {"HCO3-", "HCO3-"}, {"Br-", "Br-"}};
    EXPECT_EQ(table.spreadChargeNames(), spread);
    for (const auto& [spreadName, counted] : spread) EXPECT_EQ(table.countedChargeName(spreadName), counted);
}

TEST(ElementTable, EachLookupNamesItsMissWithItsOwnMessage) {
    const ElementTable table;
    // Sulfur and iron exist only in a stated valence; master species without an entry are unknown.
    for (const std::string name : {"S", "Fe", "Mn", "Li", "Al", "ca", "", "C "}) {
        expectLogicError([&] { table.basisSpecies(name); }, "Element name not found.", name);
        expectLogicError([&] { table.ionName(name); }, "Element name not found.", name);
        expectLogicError([&] { table.molarMass(name); }, "Element name not found.", name);
    }
    expectLogicError([&] { table.gasElement("CH4"); }, "Gas name not found!", "CH4");
    expectLogicError([&] { table.molecularWeight("N2"); }, "Molecular Weight not found!", "N2");
    // Lab ion lookup goes by the counted ion name, never the element or the spread form.
    for (const std::string ion : {"Ca", "SO4--", "CO3-2"}) {
        expectLogicError([&] { table.labIonElement(ion); }, "Ion name not found.", ion);
    }
    for (const std::string name : {"Ca+2", "SO4-2", "NO3-"}) {
        expectLogicError([&] { table.countedChargeName(name); }, "Spread-Charge ion name not found!", name);
    }
}
