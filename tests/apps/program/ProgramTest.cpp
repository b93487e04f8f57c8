// The brinecast program run as a user runs it: shipped examples, every accepted unit and name,
// each kind of bad input with its message and exit status, and batch order.
#include "ProgramRun.h"
#include "brinecast/readers/CsvTable.h"

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

using brinecast_test::brinecast;
using brinecast_test::ProgramRun;
using brinecast_test::readFile;
using brinecast_test::ScratchDirectory;
using korvane::Brinecast::cli::CsvTable;

namespace {

const std::string kExamples = BRINECAST_EXAMPLES;
const std::string kData = BRINECAST_PROGRAM_TEST_DATA;

rapidjson::Document parsed(const std::string& json) {
    rapidjson::Document d;
    d.Parse<rapidjson::kParseFullPrecisionFlag>(json.c_str());
    EXPECT_FALSE(d.HasParseError()) << json;
    return d;
}

/// The field of `row` under the header `column`, as the program wrote it.
std::string field(const CsvTable& t, std::size_t row, const std::string& column) {
    for (std::size_t i = 0; i < t.header().size(); ++i) {
        if (t.header()[i] == column) return t.rows().at(row).fields.at(i);
    }
    ADD_FAILURE() << "no column " << column;
    return "";
}

bool has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

// A lab analysis of 1000 mg/L each of sodium and chloride: far from balanced.
const std::string kUnbalanced = kData + "/unbalanced.json";

}  // namespace

TEST(Program, EveryShippedExampleGivesACheckedReportWithAPlausiblePH) {
    ScratchDirectory scratch;
    for (const char* example : {"standard-seawater", "north-sea-formation-water", "basin-brine",
                                "sour-produced-water", "condensed-water", "field-lab-report"}) {
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
        if (std::string(example) == "north-sea-formation-water") {  // per litre, no density given
            EXPECT_STREQ(a["densitySource"].GetString(), "engine");
            EXPECT_GT(a["densityGcm3"].GetDouble(), 1.04);  // 87 g/L of salts at 25 °C
            EXPECT_LT(a["densityGcm3"].GetDouble(), 1.08);
        }
    }
    const ProgramRun batch = brinecast("batch " + kExamples + "/seawater-formation-water-mixing.csv -o -",
                                       scratch);
    EXPECT_EQ(batch.status, 0) << batch.err;
    EXPECT_EQ(CsvTable::parse(batch.out, "out").rows().size(), 33u);
    // The streamed batch calculates with the model asked for, and names that model's species.
    const ProgramRun pitzer = brinecast(
        "batch --activity pitzer " + kExamples + "/seawater-formation-water-mixing.csv -o -", scratch);
    EXPECT_EQ(pitzer.status, 0) << pitzer.err;
    const CsvTable table = CsvTable::parse(pitzer.out, "out");
    ASSERT_EQ(table.rows().size(), 33u);
    for (std::size_t row = 0; row < table.rows().size(); ++row) EXPECT_EQ(field(table, row, "activity_model"), "pitzer");
    EXPECT_EQ(std::count(table.header().begin(), table.header().end(), "NaSO4- (mol/kgw)"), 0);

    // Under auto each row gets its own model, and the columns hold both models' species.
    const std::string mixed = scratch.write("mixed.csv", "name,temperature,temperature_unit,pressure,pressure_unit,unit,Na,Cl,Zn,S(-2)\n"
                                                         "covered,25,C,1,bar,mol/kgw,1,1,,\n"
                                                         "zinc,25,C,1,bar,mol/kgw,1,1.002,0.001,\n"
                                                         "sour,25,C,1,bar,mol/kgw,1,1.001,,0.001\n");
    const ProgramRun automatic = brinecast("batch " + mixed + " -o -", scratch);
    EXPECT_EQ(automatic.status, 0) << automatic.err;
    const CsvTable rows = CsvTable::parse(automatic.out, "out");
    ASSERT_EQ(rows.rows().size(), 3u);
    const std::pair<const char*, const char*> expected[] = {
        {"pitzer", "auto"}, {"debye-huckel", "auto: Pitzer data lack Zn"}, {"debye-huckel", "auto: Pitzer data lack S(-2)"}};
    for (std::size_t row = 0; row < 3; ++row) {
        EXPECT_EQ(field(rows, row, "activity_model"), expected[row].first);
        EXPECT_EQ(field(rows, row, "activity_note"), expected[row].second);
    }
    EXPECT_EQ(std::count(rows.header().begin(), rows.header().end(), "ZnCl+ (mol/kgw)"), 1);
}

TEST(Program, JsonAndCsvCarryTheSameFullPrecisionNumbers) {
    ScratchDirectory scratch;
    const std::string file = kExamples + "/standard-seawater.json";
    const rapidjson::Document d = parsed(brinecast("speciate --format json " + file, scratch).out);
    const CsvTable csv = CsvTable::parse(brinecast("speciate --format csv " + file, scratch).out, "out");
    const rapidjson::Value& a = d["analyses"][0];
    EXPECT_EQ(std::strtod(field(csv, 0, "pH").c_str(), nullptr), a["pH"].GetDouble());
    std::size_t compared = 0;
    for (const auto& component : a["components"].GetArray()) {
        for (const auto& s : component["species"].GetArray()) {
            const std::string column = std::string(s["name"].GetString()) + " (mol/kgw)";
            EXPECT_EQ(std::strtod(field(csv, 0, column).c_str(), nullptr),
                      s["molalityMolPerKgw"].GetDouble()) << column;
            const std::string gamma = std::string(s["name"].GetString()) + " log10 gamma";
            EXPECT_EQ(std::strtod(field(csv, 0, gamma).c_str(), nullptr),
                      s["log10ActivityCoefficient"].GetDouble()) << gamma;
            ++compared;
        }
    }
    EXPECT_GT(compared, 10u);
    EXPECT_EQ(field(csv, 0, "activity_model"), a["activity"]["model"].GetString());
    EXPECT_EQ(std::strtod(field(csv, 0, "ionic_strength_mol_per_kgw").c_str(), nullptr),
              a["activity"]["ionicStrengthMolPerKgw"].GetDouble());
}

// Auto unless the user says otherwise: Pitzer where its data cover the analysis, Debye–Hückel
// with the reason elsewhere, named in every report; the specified solver, which knows ideal
// activities only, is refused with any other model before anything runs.
TEST(Program, TheActivityModelIsChosenNamedAndKeptFromTheSpecifiedSolver) {
    ScratchDirectory scratch;
    const std::string seawater = kExamples + "/standard-seawater.json";
    struct Case {
        const char* options;
        std::string file;
        const char* model;
        const char* label;  ///< as the table names it
        const char* lacks;  ///< JSON's pitzerDataLack, empty for none
    };
    const Case cases[] = {{"", seawater, "pitzer", "pitzer (auto)", ""},
                          {"--activity debye-huckel ", seawater, "debye-huckel", "debye-huckel", ""},
                          {"--activity davies ", seawater, "davies", "davies", ""},
                          {"--activity ideal ", seawater, "ideal", "ideal", ""},
                          {"--activity pitzer --macinnes off ", seawater, "pitzer", "pitzer", ""},
                          {"--activity AUTO ", kExamples + "/sour-produced-water.json", "debye-huckel",
                           "debye-huckel (auto: Pitzer data lack S(-2))", "S(-2)"}};
    std::map<std::string, double> pH;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.options);
        const ProgramRun table = brinecast(std::string(c.options) + "speciate " + c.file, scratch);
        EXPECT_EQ(table.status, 0) << table.err;
        EXPECT_TRUE(has(table.out, std::string("Activities      ") + c.label + "; ionic strength ")) << table.out;
        EXPECT_TRUE(has(table.out, "log10 gamma")) << table.out;
        const ProgramRun ph = brinecast(std::string(c.options) + "ph " + c.file, scratch);
        EXPECT_TRUE(has(ph.out, std::string(" ok      ") + c.label + "\n")) << ph.out;
        const rapidjson::Document d = parsed(brinecast(std::string(c.options) + "speciate --format json " + c.file, scratch).out);
        const rapidjson::Value& a = d["analyses"][0]["activity"];
        EXPECT_STREQ(a["model"].GetString(), c.model);
        EXPECT_STREQ(a["selection"].GetString(), c.options[0] == '\0' || has(c.options, "AUTO") ? "auto" : "given");
        EXPECT_EQ(a.HasMember("pitzerDataLack") ? a["pitzerDataLack"][0].GetString() : std::string(), c.lacks);
        pH[c.options] = d["analyses"][0]["pH"].GetDouble();
        // Seawater: I of 0.6-0.75 mol/kgw whatever the model (ideal activities pair more ions).
        if (c.file == seawater) {
            EXPECT_NEAR(a["ionicStrengthMolPerKgw"].GetDouble(), 0.675, 0.075);
        }
    }
    // The activity of H+ in seawater sits well above its molality: the pH moves by tenths; the
    // MacInnes scale moves Pitzer's pH too, never its molalities.
    EXPECT_GT(std::fabs(pH["--activity debye-huckel "] - pH["--activity ideal "]), 0.1);
    EXPECT_GT(std::fabs(pH[""] - pH["--activity pitzer --macinnes off "]), 1e-3);

    const ProgramRun refused = brinecast("--method specified speciate " + seawater, scratch);
    EXPECT_EQ(refused.status, 2);
    EXPECT_TRUE(has(refused.err, "--method specified solves with ideal activities only, and the activity model is "
                                 "auto: give --activity ideal with it, or leave --method at robust."))
        << refused.err;
}

TEST(Program, EveryUnitAndLabIonNameIsAccepted) {
    ScratchDirectory scratch;
    std::vector<std::string> conditions, amounts;
    std::istringstream lines(readFile(kData + "/every-unit.txt"));
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind("T ", 0) == 0) conditions.push_back(line.substr(2));
        if (line.rfind("A ", 0) == 0) amounts.push_back(line.substr(2));
    }
    ASSERT_EQ(conditions.size() * amounts.size(), 72u);
    double reference = 0.0;
    for (const std::string& c : conditions) {
        for (const std::string& a : amounts) {
            const std::string file = scratch.write("brine.json", "{" + c + ", " + a + "}");
            const ProgramRun run = brinecast("ph --format csv " + file, scratch);
            ASSERT_EQ(run.status, 0) << c << a << "\n" << run.err;
            const double pH = std::strtod(field(CsvTable::parse(run.out, "out"), 0, "pH").c_str(), nullptr);
            if (&c == &conditions[0] && &a == &amounts[0]) reference = pH;
            // The same brine and conditions in other units: the same pH but for rounding.
            if (&a == &amounts[0]) {
                EXPECT_NEAR(pH, reference, 1e-9) << c;
            }
            EXPECT_GT(pH, 5.0) << c << a;
            EXPECT_LT(pH, 10.0) << c << a;
        }
    }
}

TEST(Program, BadInputIsRefusedWithItsMessageAndStatus2) {
    struct Case { const char* file; std::string text; std::string command; std::string message; };
    const std::string head = R"({"temperature": {"value": 25, "unit": "°C"}, "pressure": {"value": 1, "unit": "bar"}, )";
    const Case cases[] = {
        {"a.json", head + R"("unit": "mg/L", "elements": {"Unobtainium": 1}})", "speciate",
         "\"Unobtainium\" is not a known element or ion; use C, Ca"},
        {"a.json", head + R"("unit": "ppb", "elements": {"Na+": 1}})", "ph",
         "field \"unit\": \"ppb\" is not a concentration unit; use mol/kgw, mmol/kgw, mmol/L, meq/L, mg/L, g/L, mg/kg or ppm"},
        {"a.csv", "name,temperature,temperature_unit,pressure,pressure_unit,unit,Na+\nA,25,°C,1,bar,mg/L,12.5.1\n",
         "speciate", "a.csv:2: column \"Na+\": \"12.5.1\" is not a number"},
        {"a.json", "", "ph", "a.json: the file is empty"},
        {"a.json", readFile(kUnbalanced), "speciate --balance-with Xe",
         "\"Xe\" is not an element or ion to balance with"},
        {"nowhere.json", "", "speciate", "nowhere.json: cannot be read (No such file or directory)"},
    };
    for (const Case& c : cases) {
        ScratchDirectory scratch;
        const std::string file = has(c.file, "nowhere") ? scratch.path(c.file) : scratch.write(c.file, c.text);
        const ProgramRun run = brinecast(c.command + " " + file, scratch);
        EXPECT_EQ(run.status, 2) << c.command << "\n" << run.err;
        EXPECT_TRUE(has(run.err, c.message)) << "stderr: " << run.err << "\nexpected: " << c.message;
    }
}

TEST(Program, UsageErrorsExitWith2AndHelpWith0) {
    ScratchDirectory scratch;
    const std::string& file = kUnbalanced;
    for (const std::string& arguments :
         {std::string(""), std::string("fly"), "speciate --colour " + file, "speciate --format xml " + file,
          "balance " + file, "batch " + file, std::string("ph"), "--engine-dir /no/such/dir ph " + file,
          "--method fastest speciate " + file}) {
        EXPECT_EQ(brinecast(arguments, scratch).status, 2) << arguments;
    }
    const ProgramRun help = brinecast("--help", scratch);
    EXPECT_EQ(help.status, 0);
    for (const char* command : {"speciate", "ph", "balance", "batch", "elements", "--engine-dir"}) {
        EXPECT_TRUE(has(help.out, command)) << command;
    }
}

// 3.8 mol/kgw NaCl with calcium at 125 °C: the specified solver loses its digits; the default
// robust solver needs no detour, and auto falls back to it.
TEST(Program, AFailedCalculationExitsWith1AndSaysWhatToTry) {
    ScratchDirectory scratch;
    const std::string file = kData + "/hypersaline.json";
    // With ideal activities auto tries the specified solver first; with any other model the
    // specified solver cannot run at all.
    for (const auto& [option, method] : {std::pair<std::string, const char*>{"", "robust"},
                                         {"--method auto --activity ideal ", "robust after specified"}}) {
        const ProgramRun solved = brinecast(option + "speciate --format json " + file, scratch);
        EXPECT_EQ(solved.status, 0) << solved.err;
        const rapidjson::Document d = parsed(solved.out);
        const rapidjson::Value& a = d["analyses"][0];
        EXPECT_STREQ(a["solver"]["method"].GetString(), method);
        EXPECT_LE(a["solver"]["massBalanceError"].GetDouble(), 1e-10);
        EXPECT_TRUE(a["check"]["closed"].GetBool());
    }

    const ProgramRun specified = brinecast("--method specified --activity ideal speciate " + file, scratch);
    EXPECT_EQ(specified.status, 1);
    EXPECT_TRUE(has(specified.out, "Solver          specified, ")) << specified.out;
    EXPECT_TRUE(has(specified.out, "NOT converged")) << specified.out;
    EXPECT_TRUE(has(specified.out, "What to try     ")) << specified.out;

    const std::string perLitre = kExamples + "/north-sea-formation-water.json";
    const ProgramRun noEngine = brinecast("--engine-dir " + scratch.path() + " speciate " + perLitre, scratch);
    EXPECT_EQ(noEngine.status, 1);
    EXPECT_TRUE(has(noEngine.out, "failed: Korvane dll could not be loaded")) << noEngine.out;
    EXPECT_TRUE(has(noEngine.out, "give --engine-dir DIR")) << noEngine.out;
    // Analyses that need no density still run without an engine.
    EXPECT_EQ(brinecast("--engine-dir " + scratch.path() + " ph " + kExamples + "/standard-seawater.json",
                        scratch).status, 0);
}

TEST(Program, BalanceFindsTheCancellingAmountAndSpeciateCanApplyIt) {
    ScratchDirectory scratch;
    const std::string& file = kUnbalanced;
    const ProgramRun balance = brinecast("balance " + file + " --with Cl- --format json", scratch);
    ASSERT_EQ(balance.status, 0) << balance.err;
    // Net charge 1000/22.9898 - 1000/35.453 meq/L, cancelled by that many mmol of chloride.
    const double chloride = (1000 / 22.9898 - 1000 / 35.453) * 35.453;
    EXPECT_NEAR(parsed(balance.out)["analyses"][0]["amount"].GetDouble(), chloride, 1e-9);

    EXPECT_TRUE(has(brinecast("speciate " + file, scratch).out,
                    "Warning         The analysis is out of charge balance by 21.3 %"));
    const ProgramRun balanced = brinecast("speciate --balance-with Cl- " + file, scratch);
    EXPECT_EQ(balanced.status, 0) << balanced.err;
    EXPECT_TRUE(has(balanced.out, "Balanced with   Cl: added 542.1")) << balanced.out;
    EXPECT_FALSE(has(balanced.out, "Warning")) << balanced.out;
}

TEST(Program, BatchKeepsOneRowPerInputRowInOrderWithFailedRowsInPlace) {
    ScratchDirectory scratch;
    const std::string input = kData + "/batch-with-bad-rows.csv";
    const ProgramRun run = brinecast("batch " + input + " -o " + scratch.path("out.csv"), scratch);
    EXPECT_EQ(run.status, 2) << run.err;  // two rows could not be read
    EXPECT_TRUE(has(run.err, "5 analyses: 3 ok, 0 failed, 2 with invalid input")) << run.err;
    const CsvTable out = CsvTable::parse(readFile(scratch.path("out.csv")), "out.csv");
    ASSERT_EQ(out.rows().size(), 5u);
    const char* expected[][2] = {{"first", "ok"}, {"bad number", "invalid input"}, {"third", "ok"},
                                 {"negative", "invalid input"}, {"fifth", "ok"}};
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(out.rows()[i].fields[0], input + ":" + std::to_string(i + 2));
        EXPECT_EQ(out.rows()[i].fields[1], expected[i][0]);
        EXPECT_EQ(out.rows()[i].fields[3], expected[i][1]);
    }
    EXPECT_TRUE(has(out.rows()[1].fields[4], "\"1OO\" is not a number")) << out.rows()[1].fields[4];
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
