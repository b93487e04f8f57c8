#include "brinecast/reports/CsvReport.h"
#include "brinecast/reports/JsonReport.h"
#include "brinecast/reports/TableReport.h"

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <sstream>

namespace bc = korvane::Brinecast;
using namespace korvane::Brinecast::cli;

namespace {

const ComponentNames& names() {
    static const ComponentNames n;
    return n;
}

// A calculated result with numbers that need all 17 digits, and a failed one.
std::vector<AnalysisResult> results() {
    AnalysisResult ok;
    ok.analysis.name = "Well 7, \"deep\"";
    ok.analysis.source = "wells.csv:2";
    ok.analysis.unit = bc::MgPerL;
    ok.densityGcm3 = 1.0123456789012345;
    ok.densitySource = AnalysisResult::DensitySource::Engine;
    ok.pH = 7.000000000000001;
    SpeciationCheck::Component c{"Ca+2", 0.9, 0.9, true, {}};
    c.species = {{"Ca+2", 0.1 + 0.2, 1.0, 1 / 3.0}, {"CaSO4", 1.0000000000000002e-300, 1.0, 0.1}};
    ok.check.components = {c};
    ok.check.chargeClosed = true;
    bc::Diagnostics solver;
    solver.converged = true;
    solver.method = bc::Method::Robust;
    solver.fellBack = true;
    solver.iterations = 4;
    solver.massBalanceError = 0.1 + 0.2;
    ok.solver = solver;
    AnalysisResult failed;
    failed.analysis.name = "W8";
    failed.analysis.source = "wells.csv:3";
    failed.status = AnalysisResult::Status::Failed;
    failed.error = "Number of trials exceeded without finding a solution.";
    failed.hint = "Check the analysis, its units, and so on.";
    return {ok, failed};
}

}  // namespace

TEST(Reports, JsonNumbersReadBackToTheSameDoublesAndFailuresStayInPlace) {
    std::ostringstream out;
    JsonReport::writeSpeciation(out, results(), names());
    rapidjson::Document d;
    d.Parse<rapidjson::kParseFullPrecisionFlag>(out.str().c_str());  // exact, as strtod reads
    ASSERT_FALSE(d.HasParseError()) << out.str();
    const rapidjson::Value& a = d["analyses"];
    ASSERT_EQ(a.Size(), 2u);
    EXPECT_EQ(a[0]["pH"].GetDouble(), 7.000000000000001);
    EXPECT_EQ(a[0]["densityGcm3"].GetDouble(), 1.0123456789012345);
    const rapidjson::Value& species = a[0]["components"][0]["species"];
    EXPECT_EQ(species[1]["molalityMolPerKgw"].GetDouble(), 1.0000000000000002e-300);
    EXPECT_STREQ(a[0]["solver"]["method"].GetString(), "robust after specified");
    EXPECT_EQ(a[0]["solver"]["iterations"].GetUint64(), 4u);
    EXPECT_FALSE(a[1].HasMember("solver"));
    EXPECT_STREQ(a[1]["status"].GetString(), "failed");
    EXPECT_TRUE(a[1]["pH"].IsNull());  // no number for a failed calculation
}

TEST(Reports, CsvKeepsOneRowPerResultWithQuotedTextAndExactNumbers) {
    std::ostringstream out;
    CsvReport::write(out, results(), true);
    std::istringstream lines(out.str());
    std::string header, first, second;
    std::getline(std::getline(std::getline(lines, header), first), second);
    EXPECT_NE(header.find(",Ca+2 (mol/kgw),CaSO4 (mol/kgw)"), std::string::npos) << header;
    EXPECT_EQ(first.rfind("wells.csv:2,\"Well 7, \"\"deep\"\"\",7.000000000000001,ok,", 0), 0u) << first;
    EXPECT_NE(first.find(",0.30000000000000004,1.0000000000000002e-300"), std::string::npos) << first;
    EXPECT_NE(header.find(",solver,solver_iterations,mass_balance_error,charge_imbalance,"), std::string::npos) << header;
    EXPECT_NE(first.find(",robust after specified,4,0.30000000000000004,0,"), std::string::npos) << first;
    EXPECT_EQ(second.rfind("wells.csv:3,W8,,failed,\"Number of trials exceeded without finding a "
                           "solution. Check the analysis, its units, and so on.\"", 0), 0u) << second;
}

TEST(Reports, TableAlignsTheSpeciesAndStatesFailures) {
    std::ostringstream out;
    TableReport::writeSpeciation(out, results(), names());
    const std::string text = out.str();
    EXPECT_NE(text.find("  Density         1.01235 g/cm3, computed by the engine library"),
              std::string::npos) << text;
    EXPECT_NE(text.find("  Ca (Ca+2)              0.9  Ca+2                    0.3      33.33\n"
                        "                              CaSO4                1e-300         10\n"),
              std::string::npos) << text;
    EXPECT_NE(text.find("  Status          failed: Number of trials exceeded"), std::string::npos);
    EXPECT_NE(text.find("  Solver          robust after specified, 4 iterations, converged; largest "
                        "mass-balance error 0.3"), std::string::npos) << text;
    EXPECT_NE(text.find("  What to try     Check the analysis"), std::string::npos);
}
