// The brinecast program run as a user runs it: shipped examples, every accepted unit and name,
// each kind of bad input with its message and exit status, and batch order.
#include "ProgramRun.h"

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

using brinecast_test::brinecast;
using brinecast_test::ProgramRun;
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

std::vector<std::vector<std::string>> csvRows(const std::string& text) {
    std::vector<std::vector<std::string>> rows;
    std::istringstream lines(text);
    std::string line;
    while (std::getline(lines, line)) {
        std::vector<std::string> fields;
        std::string field;
        bool quoted = false;
        for (char c : line) {
            if (c == '"') quoted = !quoted;
            else if (c == ',' && !quoted) { fields.push_back(field); field.clear(); }
            else field += c;
        }
        fields.push_back(field);
        rows.push_back(fields);
    }
    return rows;
}

bool has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

// A lab analysis of 1000 mg/L each of sodium and chloride: far from balanced.
const std::string kUnbalanced = R"({"name": "unbalanced", "temperature": {"value": 25, "unit": "°C"},
  "pressure": {"value": 1, "unit": "bar"}, "density": 1.0, "unit": "mg/L",
  "elements": {"Na+": 1000, "Cl-": 1000}})";

}  // namespace

TEST(Program, EveryShippedExampleGivesACheckedReportWithAPlausiblePH) {
    ScratchDirectory scratch;
    for (const char* example : {"standard-seawater", "north-sea-formation-water", "basin-brine",
                                "sour-produced-water", "condensed-water"}) {
        const ProgramRun run =
            brinecast("speciate --format json " + kExamples + "/" + example + ".json", scratch);
        EXPECT_EQ(run.status, 0) << example << "\n" << run.err;
        const rapidjson::Document d = parsed(run.out);
        const rapidjson::Value& a = d["analyses"][0];
        EXPECT_STREQ(a["status"].GetString(), "ok") << example;
        ASSERT_TRUE(a["pH"].IsNumber()) << example;
        EXPECT_GT(a["pH"].GetDouble(), 2.0) << example;
        EXPECT_LT(a["pH"].GetDouble(), 12.0) << example;
        EXPECT_TRUE(a["check"]["closed"].GetBool()) << example;
        EXPECT_EQ(a["warnings"].Size(), 0u) << example;
    }
}

TEST(Program, PerLitreExamplesTakeTheirDensityFromTheEngine) {
    ScratchDirectory scratch;
    const ProgramRun run = brinecast("speciate " + kExamples + "/north-sea-formation-water.json", scratch);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_TRUE(has(run.out, "g/cm3, computed by the engine library")) << run.out;
    EXPECT_TRUE(has(run.out, "Ba (Ba+2)")) << run.out;
    const rapidjson::Document d = parsed(
        brinecast("speciate --format json " + kExamples + "/north-sea-formation-water.json", scratch).out);
    const double density = d["analyses"][0]["densityGcm3"].GetDouble();
    EXPECT_GT(density, 1.04);  // 87 g/L of salts at 25 °C
    EXPECT_LT(density, 1.08);
}

TEST(Program, JsonAndCsvCarryTheSameFullPrecisionNumbers) {
    ScratchDirectory scratch;
    const std::string file = kExamples + "/standard-seawater.json";
    const rapidjson::Document d = parsed(brinecast("speciate --format json " + file, scratch).out);
    const auto rows = csvRows(brinecast("speciate --format csv " + file, scratch).out);
    ASSERT_EQ(rows.size(), 2u);
    const rapidjson::Value& a = d["analyses"][0];
    EXPECT_EQ(std::strtod(rows[1][2].c_str(), nullptr), a["pH"].GetDouble());
    std::size_t compared = 0;
    for (const auto& component : a["components"].GetArray()) {
        for (const auto& s : component["species"].GetArray()) {
            const std::string column = std::string(s["name"].GetString()) + " (mol/kgw)";
            for (std::size_t i = 0; i < rows[0].size(); ++i) {
                if (rows[0][i] != column) continue;
                EXPECT_EQ(std::strtod(rows[1][i].c_str(), nullptr), s["molalityMolPerKgw"].GetDouble())
                    << column;
                ++compared;
            }
        }
    }
    EXPECT_GT(compared, 10u);
}

TEST(Program, EveryUnitAndLabIonNameIsAccepted) {
    ScratchDirectory scratch;
    // One brine (0.5 mol/kgw NaCl, 10 mmol/kgw CaSO4, 2 mmol/kgw NaHCO3) written every way.
    const std::string conditions[] = {
        R"("temperature": {"value": 298.15, "unit": "K"}, "pressure": {"value": 101325, "unit": "Pa"})",
        R"("temperature": {"value": 25, "unit": "°C"}, "pressure": {"value": 1.01325, "unit": "bar"})",
        R"("temperature": {"value": 25, "unit": "C"}, "pressure": {"value": 101.325, "unit": "kPa"})",
        R"("temperature": {"value": 25, "unit": "degC"}, "pressure": {"value": 0.101325, "unit": "MPa"})",
        R"("temperature": {"value": 25, "unit": "°C"}, "pressure": {"value": 14.6959487755, "unit": "psi"})",
    };
    const std::string amounts[] = {
        R"j("unit": "mol/kgw", "elements": {"Na": 0.502, "Cl": 0.5, "Ca": 0.01, "S(6)": 0.01, "C": 0.002})j",
        R"("unit": "mmol/kgw", "elements": {"Na+": 502, "Cl-": 500, "Ca++": 10, "SO4--": 10, "HCO3-": 2})",
        R"("unit": "mmol/kgw", "elements": {"Na+": 502, "Cl-": 500, "Ca+2": 10, "SO4-2": 10, "CO3--": 2})",
        R"("unit": "mmol/L", "density": 1.02, "elements": {"Na+": 490, "Cl-": 488, "Ca++": 9.8, "SO4--": 9.8, "HCO3-": 1.95})",
        R"("unit": "mg/L", "density": 1.02, "elements": {"Na+": 11270, "Cl-": 17300, "Ca++": 392, "SO4--": 940, "HCO3-": 119})",
        R"("unit": "mg/kg", "elements": {"Na+": 11000, "Cl-": 16900, "Ca++": 383, "SO4--": 918, "HCO3-": 116})",
    };
    double reference = 0.0;
    for (const std::string& c : conditions) {
        for (const std::string& a : amounts) {
            const std::string file = scratch.write("brine.json", "{" + c + ", " + a + "}");
            const ProgramRun run = brinecast("ph --format csv " + file, scratch);
            ASSERT_EQ(run.status, 0) << c << a << "\n" << run.err;
            const auto rows = csvRows(run.out);
            const double pH = std::strtod(rows[1][2].c_str(), nullptr);
            if (&a == &amounts[0]) {
                if (&c == &conditions[0]) reference = pH;
                // The same brine and conditions in other units: the same pH but for rounding.
                EXPECT_NEAR(pH, reference, 1e-9) << c;
            }
            EXPECT_GT(pH, 5.0) << c << a;
            EXPECT_LT(pH, 10.0) << c << a;
        }
    }
}

TEST(Program, BadInputIsRefusedWithItsMessageAndStatus2) {
    struct Case { const char* file; std::string text; std::string arguments; std::string message; };
    const std::string head = R"({"temperature": {"value": 25, "unit": "°C"}, "pressure": {"value": 1, "unit": "bar"}, )";
    const std::string csv = "name,temperature,temperature_unit,pressure,pressure_unit,unit,Na+,Cl-\n";
    const Case cases[] = {
        {"a.json", head + R"("unit": "mg/L", "elements": {"Unobtainium": 1}})", "speciate",
         "\"Unobtainium\" is not a known element or ion; use C, Ca"},
        {"a.json", head + R"("unit": "ppm", "elements": {"Na+": 1}})", "speciate",
         "field \"unit\": \"ppm\" is not a concentration unit; use mol/kgw, mmol/kgw, mmol/L, mg/L or mg/kg"},
        {"a.csv", "name,temperature,temperature_unit,pressure,pressure_unit,unit,Nax\nA,25,°C,1,bar,mg/L,1\n",
         "speciate", "a.csv:1: column \"Nax\" is not a known column, element or ion"},
        {"a.csv", csv + "A,25,°C,1,bar,mg/L,12.5.1,1\n", "speciate",
         "a.csv:2: column \"Na+\": \"12.5.1\" is not a number"},
        {"a.json", R"({"pressure": {"value": 1, "unit": "bar"}, "unit": "mg/L", "elements": {"Na+": 1}})",
         "ph", "a.json: temperature: missing"},
        {"a.json", head + R"("unit": "mg/L", "elements": {"Na+": 10, "Cl-": -5}})", "ph",
         "the amount of Cl- is negative (-5)"},
        {"a.json", "", "ph", "a.json: the file is empty"},
        {"a.csv", "", "batch -o out.csv", "a.csv: the file is empty"},
        {"a.json", head + R"("unit": "mg/L", "elements": {"Na+": 1}, "gases": {"O2": 1}})", "speciate",
         "\"O2\" is not a known gas; use CO2 or H2S"},
        {"a.json", kUnbalanced, "speciate --balance-with Xe", "\"Xe\" is not an element or ion to balance with"},
    };
    for (const Case& c : cases) {
        ScratchDirectory scratch;
        const std::string file = scratch.write(c.file, c.text);
        std::string arguments = c.arguments + " " + file;
        if (has(c.arguments, "batch")) arguments = "batch " + file + " -o " + scratch.path("out.csv");
        const ProgramRun run = brinecast(arguments, scratch);
        EXPECT_EQ(run.status, 2) << arguments << "\n" << run.err;
        EXPECT_TRUE(has(run.err, c.message)) << "stderr: " << run.err << "\nexpected: " << c.message;
    }
    ScratchDirectory scratch;
    const ProgramRun missing = brinecast("speciate " + scratch.path("nowhere.json"), scratch);
    EXPECT_EQ(missing.status, 2);
    EXPECT_TRUE(has(missing.err, "nowhere.json: cannot be read (No such file or directory)"));
}

TEST(Program, UsageErrorsExitWith2AndHelpWith0) {
    ScratchDirectory scratch;
    const std::string file = scratch.write("a.json", kUnbalanced);
    for (const std::string& arguments :
         {std::string(""), std::string("fly"), "speciate --colour " + file, "speciate --format xml " + file,
          "balance " + file, "batch " + file, std::string("ph"), "--engine-dir /no/such/dir ph " + file}) {
        EXPECT_EQ(brinecast(arguments, scratch).status, 2) << arguments;
    }
    const ProgramRun help = brinecast("--help", scratch);
    EXPECT_EQ(help.status, 0);
    for (const char* command : {"speciate", "ph", "balance", "batch", "elements", "--engine-dir"}) {
        EXPECT_TRUE(has(help.out, command)) << command;
    }
}

TEST(Program, AFailedCalculationExitsWith1AndSaysWhatToTry) {
    ScratchDirectory scratch;
    const ProgramRun run = brinecast("--engine-dir " + scratch.path() + " speciate " + kExamples +
                                         "/north-sea-formation-water.json",
                                     scratch);
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(has(run.out, "failed: Korvane dll could not be loaded")) << run.out;
    EXPECT_TRUE(has(run.out, "give --engine-dir DIR")) << run.out;
    // Above about 3 mol/kgw of chloride the specified solver gives up; by default the robust one
    // takes over.
    const std::string salty = scratch.write("salty.json", R"({"temperature": {"value": 25, "unit": "°C"},
        "pressure": {"value": 1, "unit": "bar"}, "unit": "mol/kgw", "elements": {"Na": 4, "Cl": 4}})");
    EXPECT_EQ(brinecast("speciate " + salty, scratch).status, 0);
    const ProgramRun solver = brinecast("--method specified speciate " + salty, scratch);
    EXPECT_EQ(solver.status, 1);
    EXPECT_TRUE(has(solver.out, "What to try     Check the analysis' charge balance")) << solver.out;
    // Analyses that need no density still run without an engine.
    EXPECT_EQ(brinecast("--engine-dir " + scratch.path() + " ph " + kExamples + "/standard-seawater.json",
                        scratch).status, 0);
}

// 3.8 mol/kgw NaCl with calcium at 125 °C: the specified solver loses its digits, Auto does not.
TEST(Program, HypersalineBrinesAreSolvedByTheRobustSolverUnlessTheSpecifiedOneIsAskedFor) {
    ScratchDirectory scratch;
    const std::string file = scratch.write("hypersaline.json", R"({"name": "hypersaline",
      "temperature": {"value": 125, "unit": "°C"}, "pressure": {"value": 50, "unit": "bar"},
      "unit": "mol/kgw", "elements": {"Na+": 3.8, "Ca++": 0.2, "Cl-": 4.2}})");
    const ProgramRun automatic = brinecast("speciate --format json " + file, scratch);
    EXPECT_EQ(automatic.status, 0) << automatic.err;
    const rapidjson::Document d = parsed(automatic.out);
    const rapidjson::Value& solver = d["analyses"][0]["solver"];
    EXPECT_STREQ(solver["method"].GetString(), "robust after specified");
    EXPECT_TRUE(solver["converged"].GetBool());
    EXPECT_LE(solver["massBalanceError"].GetDouble(), 1e-10);
    EXPECT_TRUE(d["analyses"][0]["check"]["closed"].GetBool());
    EXPECT_TRUE(has(brinecast("speciate " + file, scratch).out, "Solver          robust after specified, "));
    const auto rows = csvRows(brinecast("--method robust speciate --format csv " + file, scratch).out);
    ASSERT_EQ(rows.size(), 2u);
    std::size_t column = 0;
    while (column < rows[0].size() && rows[0][column] != "solver") ++column;
    ASSERT_LT(column, rows[1].size());
    EXPECT_EQ(rows[1][column], "robust");

    const ProgramRun specified = brinecast("--method specified speciate " + file, scratch);
    EXPECT_EQ(specified.status, 1);
    EXPECT_TRUE(has(specified.out, "Solver          specified, ")) << specified.out;
    EXPECT_TRUE(has(specified.out, "NOT converged")) << specified.out;
    EXPECT_EQ(brinecast("--method fastest speciate " + file, scratch).status, 2);
}

TEST(Program, BalanceFindsTheCancellingAmountAndSpeciateCanApplyIt) {
    ScratchDirectory scratch;
    const std::string file = scratch.write("a.json", kUnbalanced);
    const ProgramRun balance = brinecast("balance " + file + " --with Cl- --format json", scratch);
    ASSERT_EQ(balance.status, 0) << balance.err;
    const rapidjson::Document d = parsed(balance.out);
    // Net charge 1000/22.9898 - 1000/35.453 meq/L, cancelled by that many mmol of chloride.
    const double chloride = (1000 / 22.9898 - 1000 / 35.453) * 35.453;
    EXPECT_NEAR(d["analyses"][0]["amount"].GetDouble(), chloride, 1e-9);
    EXPECT_STREQ(d["analyses"][0]["element"].GetString(), "Cl");

    const ProgramRun unbalanced = brinecast("speciate " + file, scratch);
    EXPECT_TRUE(has(unbalanced.out, "Warning         The analysis is out of charge balance by 21.3 %"))
        << unbalanced.out;
    const ProgramRun balanced = brinecast("speciate --balance-with Cl- " + file, scratch);
    EXPECT_EQ(balanced.status, 0) << balanced.err;
    EXPECT_TRUE(has(balanced.out, "Balanced with   Cl: added 542.1")) << balanced.out;
    EXPECT_FALSE(has(balanced.out, "Warning")) << balanced.out;
}

TEST(Program, BatchKeepsOneRowPerInputRowInOrderWithFailedRowsInPlace) {
    ScratchDirectory scratch;
    const std::string input = scratch.write("in.csv",
        "name,temperature,temperature_unit,pressure,pressure_unit,density,unit,Na+,Cl-,HCO3-\n"
        "first,25,°C,1,bar,,mmol/kgw,100,99,1\n"
        "bad number,25,°C,1,bar,,mmol/kgw,1OO,99,1\n"
        "third,50,°C,10,bar,,mg/L,2300,3510,61\n"
        "negative,25,°C,1,bar,,mmol/kgw,100,-99,1\n"
        "fifth,80,°C,100,bar,1.01,mg/L,2300,3510,61\n");
    const ProgramRun run = brinecast("batch " + input + " -o " + scratch.path("out.csv"), scratch);
    EXPECT_EQ(run.status, 2) << run.err;  // two rows could not be read
    EXPECT_TRUE(has(run.err, "5 analyses: 3 ok, 0 failed, 2 with invalid input")) << run.err;
    const auto rows = csvRows(readFile(scratch.path("out.csv")));
    ASSERT_EQ(rows.size(), 6u);
    const char* expected[][2] = {{"first", "ok"}, {"bad number", "invalid input"}, {"third", "ok"},
                                 {"negative", "invalid input"}, {"fifth", "ok"}};
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(rows[i + 1][0], input + ":" + std::to_string(i + 2));
        EXPECT_EQ(rows[i + 1][1], expected[i][0]);
        EXPECT_EQ(rows[i + 1][3], expected[i][1]);
    }
    EXPECT_TRUE(has(rows[2][4], "1OO")) << rows[2][4];
    EXPECT_TRUE(has(rows[2][4], "is not a number")) << rows[2][4];

    const ProgramRun shipped = brinecast("batch " + kExamples + "/seawater-formation-water-mixing.csv -o -",
                                         scratch);
    EXPECT_EQ(shipped.status, 0) << shipped.err;
    EXPECT_EQ(csvRows(shipped.out).size(), 34u);
}

TEST(Program, ElementsListsTheNamesAndTheMassConventions) {
    ScratchDirectory scratch;
    const ProgramRun run = brinecast("elements", scratch);
    EXPECT_EQ(run.status, 0);
    for (const char* text : {"S(6)", "SO4--", "61.0191", "96.064", "CO3-- (carbonate, converted)",
                             "H2S", "S(-2)", "counted as bicarbonate"}) {
        EXPECT_TRUE(has(run.out, text)) << text << "\n" << run.out;
    }
}
