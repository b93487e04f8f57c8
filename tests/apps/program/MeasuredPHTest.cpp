// A lab analysis as a chemist writes it: the pH by charge balance that a small imbalance spoils,
// and the measured pH and alkalinity that replace it.
#include "ProgramRun.h"

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <cmath>
#include <sstream>
#include <string>

using brinecast_test::brinecast;
using brinecast_test::readFile;
using brinecast_test::ScratchDirectory;

namespace {

const std::string kExamples = BRINECAST_EXAMPLES;

rapidjson::Document parsed(const std::string& json) {
    rapidjson::Document d;
    d.Parse<rapidjson::kParseFullPrecisionFlag>(json.c_str());
    EXPECT_FALSE(d.HasParseError()) << json;
    return d;
}

/// The header and the seawater row at 25 °C of the shipped mixing series: 0.16 % of its total
/// charge out of balance, 85 % of its alkalinity.
std::string seawaterRow() {
    std::istringstream lines(readFile(kExamples + "/seawater-formation-water-mixing.csv"));
    std::string header, line;
    std::getline(lines, header);
    while (std::getline(lines, line)) {
        if (line.rfind("SW 100% in FW at 25", 0) == 0) return header + "\n" + line + "\n";
    }
    ADD_FAILURE() << "the mixing example has no seawater row at 25 °C";
    return header + "\n";
}

/// The same row with what the lab measured: pH, alkalinity as its bicarbonate, chloride to close.
std::string withMeasurements(const std::string& csv, const std::string& pH) {
    const auto eol = csv.find('\n');
    return csv.substr(0, eol) + ",pH,alkalinity,alkalinity_unit,balance_with" +
           csv.substr(eol, csv.size() - eol - 1) + "," + pH + ",140,mg/L as HCO3-,Cl-\n";
}

}  // namespace

TEST(MeasuredPH, AnImbalanceRivallingTheAlkalinityIsFlaggedAndAMeasuredPHReplacesIt) {
    ScratchDirectory scratch;
    const std::string row = scratch.write("seawater.csv", seawaterRow());
    // Ideal activities, as the library's run: 0.16 % of the charge moves the pH by two units.
    const rapidjson::Document raw = parsed(brinecast("--activity ideal speciate --format json " + row, scratch).out);
    const rapidjson::Value& unbalanced = raw["analyses"][0];
    EXPECT_NEAR(unbalanced["pH"].GetDouble(), 5.37, 0.005);
    ASSERT_EQ(unbalanced["warnings"].Size(), 1u);
    EXPECT_NE(std::string(unbalanced["warnings"][0].GetString()).find("% of the alkalinity"), std::string::npos);
    EXPECT_STREQ(unbalanced["pHSource"].GetString(), "charge balance");

    const rapidjson::Document fixed =
        parsed(brinecast("--activity ideal speciate --balance-with Cl --format json " + row, scratch).out);
    EXPECT_NEAR(fixed["analyses"][0]["pH"].GetDouble(), 7.45, 0.005);
    EXPECT_EQ(fixed["analyses"][0]["warnings"].Size(), 0u);

    // The lab's pH and alkalinity: the pH stands, chloride takes up what the balance cancelled.
    const std::string measured = scratch.write("measured.csv", withMeasurements(seawaterRow(), "7.452"));
    const rapidjson::Document m = parsed(brinecast("--activity ideal speciate --format json " + measured, scratch).out);
    const rapidjson::Value& a = m["analyses"][0];
    EXPECT_STREQ(a["status"].GetString(), "ok");
    EXPECT_DOUBLE_EQ(a["pH"].GetDouble(), 7.452);
    EXPECT_STREQ(a["pHSource"].GetString(), "measured");
    EXPECT_TRUE(a["check"]["closed"].GetBool());
    EXPECT_EQ(a["warnings"].Size(), 0u);
    // 140 mg/L as HCO3- per litre of solution, read per kg of the water it holds.
    const double kgWaterPerL = a["densityGcm3"].GetDouble() - a["dissolvedSolids"]["mgPerL"].GetDouble() / 1e6;
    EXPECT_NEAR(a["alkalinityEqPerKgw"].GetDouble(), 140.0 / 61.0171 / 1e3 / kgWaterPerL, 1e-12);
    const rapidjson::Value& imposed = a["imposed"];
    EXPECT_STREQ(imposed["balancedWith"].GetString(), "Cl");
    // What --balance-with took away: -0.00194 eq/L (68.8 mg/L of Cl), within the carbon it also moves.
    EXPECT_NEAR(imposed["balanceAdjustmentMolPerKgw"].GetDouble(), -0.00194 / kgWaterPerL, 1e-4);
    EXPECT_GT(imposed["derivedCarbonMolPerKgw"].GetDouble(), 0.0);
}
