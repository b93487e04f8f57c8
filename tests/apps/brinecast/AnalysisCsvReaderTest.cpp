#include "brinecast/readers/AnalysisCsvReader.h"
#include "BadInputCases.h"

#include <gtest/gtest.h>

#include <string>

namespace bc = korvane::Brinecast;
using korvane::Brinecast::cli::AnalysisCsvReader;
using korvane::Brinecast::cli::ComponentNames;

namespace {

const ComponentNames& names() {
    static const ComponentNames n;
    return n;
}

std::vector<AnalysisCsvReader::Row> read(const std::string& text) {
    return AnalysisCsvReader(names()).read(text, "batch.csv");
}

const std::string kHeader =
    "name,temperature,temperature_unit,pressure,pressure_unit,density,unit,Na+,Cl-,CO3--,CO2\n";

}  // namespace

TEST(AnalysisCsvReader, EveryRowKeepsItsPlaceAndABadRowCarriesItsError) {
    const auto rows = read(kHeader +
                           "A,25,°C,1,bar,,mg/L,100,154,,0.01\n"
                           "B,298.15,K,14.7,psi,1.01,mmol/kgw,1,1,0.5,\n"
                           "C,25,°C,1,bar,,mg/L,1O0,154,,\n"
                           "D,25,°C,1,bar,,mg/L,100\n"
                           "E,,°C,1,bar,,mg/L,100,154,,\n"
                           "F,25,°C,1,bar,,mg/L,100,-1,,\n");
    ASSERT_EQ(rows.size(), 6u);
    ASSERT_TRUE(rows[0].analysis);
    EXPECT_EQ(rows[0].analysis->name, "A");
    EXPECT_EQ(rows[0].analysis->elements.size(), 2u);  // empty carbonate cell: absent
    EXPECT_EQ(rows[0].analysis->gases.size(), 1u);
    EXPECT_EQ(rows[0].analysis->densityGcm3, 0.0);
    ASSERT_TRUE(rows[1].analysis);
    EXPECT_EQ(rows[1].analysis->unit, bc::MmolPerKgw);
    EXPECT_EQ(rows[1].analysis->elements[2].name, "C");
    EXPECT_EQ(rows[1].analysis->source, "batch.csv:3");

    const std::pair<std::size_t, const char*> errors[] = {
        {2, "batch.csv:4: column \"Na+\": \"1O0\" is not a number"},
        {3, "batch.csv:5: row: has 8 fields where the header has 11"},
        {4, "batch.csv:6: temperature: missing"},
        {5, "batch.csv:7: column \"Cl-\": the amount of Cl- is negative (-1)"},
    };
    for (const auto& [index, message] : errors) {
        EXPECT_FALSE(rows[index].analysis);
        EXPECT_EQ(rows[index].name, std::string(1, static_cast<char>('A' + index)));
        EXPECT_EQ(rows[index].error.rfind(message, 0), 0u) << rows[index].error;
        EXPECT_EQ(rows[index].line, index + 2);
    }
}

TEST(AnalysisCsvReader, HeaderProblemsRefuseTheWholeFile) {
    expectEveryCaseRefused("bad-csv-headers.txt", [](const std::string& text) { read(text); });
}

// The measured quantities are optional per row: an empty cell imposes nothing, so one batch can
// mix analyses with and without a measured pH.
TEST(AnalysisCsvReader, MeasuredPHAlkalinityAndBalancingIonArePerRow) {
    const auto rows = read("name,temperature,temperature_unit,pressure,pressure_unit,unit,pH,alkalinity,"
                           "alkalinity_unit,balance_with,Na+,Cl-,HCO3-\n"
                           "A,77,°F,100,psig,mg/L,7.1,250,mg/L as CaCO3,Na+,11000,17000,300\n"
                           "B,25,°C,1,atm,mg/L,,,,,11000,17000,300\n"
                           "C,25,°C,1,atm,mg/L,,250,mg/L as CaCO3,,11000,17000,300\n"
                           "D,25,°C,1,atm,mg/L,7.1,250,mg/L CaCO3,,11000,17000,300\n");
    ASSERT_EQ(rows.size(), 4u);
    ASSERT_TRUE(rows[0].analysis) << rows[0].error;
    EXPECT_EQ(rows[0].analysis->pH, 7.1);
    EXPECT_NEAR(*rows[0].analysis->alkalinityMeqPerL, 250.0 / 50.0435, 1e-12);
    EXPECT_EQ(rows[0].analysis->balanceWith, "Na");
    ASSERT_TRUE(rows[1].analysis) << rows[1].error;
    EXPECT_FALSE(rows[1].analysis->pH);
    EXPECT_FALSE(rows[1].analysis->alkalinityMeqPerL);
    EXPECT_TRUE(rows[1].analysis->balanceWith.empty());
    EXPECT_EQ(rows[2].error.rfind("batch.csv:4: alkalinity: a measured alkalinity needs the pH", 0), 0u) << rows[2].error;
    EXPECT_EQ(rows[3].error.rfind("batch.csv:5: column \"alkalinity_unit\": \"mg/L CaCO3\" is not an alkalinity unit", 0), 0u)
        << rows[3].error;
}
