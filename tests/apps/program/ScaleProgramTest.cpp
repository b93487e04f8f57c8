// The scale commands run as a user runs them: report shapes in every format, exit statuses, and
// the arguments they refuse.
#include "ProgramRun.h"
#include "brinecast/readers/CsvTable.h"

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <string>

using brinecast_test::brinecast;
using brinecast_test::ProgramRun;
using brinecast_test::ScratchDirectory;
using korvane::Brinecast::cli::CsvTable;

namespace {

const std::string kFormation = std::string(BRINECAST_EXAMPLES) + "/north-sea-formation-water.json";
const std::string kSeawater = std::string(BRINECAST_EXAMPLES) + "/standard-seawater.json";

rapidjson::Document parsed(const std::string& json) {
    rapidjson::Document d;
    d.Parse(json.c_str());
    EXPECT_FALSE(d.HasParseError()) << json;
    return d;
}

bool has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

}  // namespace

TEST(ScaleProgram, ScaleReportsEveryMineralWithItsPotentialInEachFormat) {
    ScratchDirectory scratch;
    const ProgramRun json = brinecast("scale --format json " + kFormation, scratch);
    ASSERT_EQ(json.status, 0) << json.err;
    const rapidjson::Document d = parsed(json.out);
    const rapidjson::Value& minerals = d["analyses"][0]["minerals"];
    ASSERT_GE(minerals.Size(), 3u);  // calcite, aragonite, halite; Pitzer lacks the other two
    EXPECT_STREQ(d["analyses"][0]["activity"].GetString(), "pitzer (auto)");
    ASSERT_EQ(d["analyses"][0]["notAvailableUnderPitzer"].Size(), 2u);
    EXPECT_STREQ(d["analyses"][0]["notAvailableUnderPitzer"][1].GetString(), "Witherite");
    for (const auto& m : minerals.GetArray()) {
        const double si = m["saturationIndex"].GetDouble();
        EXPECT_NEAR(si, m["logIAP"].GetDouble() - m["logK"].GetDouble(), 1e-12);
        EXPECT_EQ(m["precipitationMolPerKgw"].GetDouble() > 0.0, si > 0.0) << m["name"].GetString();
    }
    EXPECT_STREQ(d["analyses"][0]["densitySource"].GetString(), "engine");

    const ProgramRun csv = brinecast("scale --format csv " + kFormation + " " + kSeawater, scratch);
    ASSERT_EQ(csv.status, 0) << csv.err;
    const CsvTable t = CsvTable::parse(csv.out, "out");
    EXPECT_EQ(t.header().size(), 14u);
    EXPECT_EQ(t.header()[12], "precipitation_mg_per_l");
    EXPECT_EQ(t.rows()[3].fields[7], "Strontianite");  // after the three Pitzer lists, numberless
    EXPECT_EQ(t.rows()[3].fields[13], "not available under Pitzer");

    const ProgramRun table = brinecast("scale --balance-with Cl " + kFormation, scratch);
    EXPECT_EQ(table.status, 0);
    EXPECT_TRUE(has(table.out, "Deposit (mg/L)")) << table.out;
    EXPECT_TRUE(has(table.out, "Calcite")) << table.out;
    EXPECT_TRUE(has(table.out, "  Activities: pitzer (auto)\n  Not available under Pitzer: Strontianite, Witherite\n"))
        << table.out;
    const ProgramRun explicitModel = brinecast("scale --activity debye-huckel " + kFormation, scratch);
    EXPECT_TRUE(has(explicitModel.out, "  Activities: debye-huckel\n\n")) << explicitModel.out;
    EXPECT_TRUE(has(explicitModel.out, "Strontianite")) << explicitModel.out;
}

TEST(ScaleProgram, MixRunsFromOneWaterToTheOther) {
    ScratchDirectory scratch;
    const ProgramRun csv = brinecast("mix " + kFormation + " " + kSeawater + " --steps 5 --format csv", scratch);
    ASSERT_EQ(csv.status, 0) << csv.err;
    const CsvTable t = CsvTable::parse(csv.out, "out");
    ASSERT_EQ(t.rows().size(), 5u);
    EXPECT_EQ(t.header()[0], "fraction");
    EXPECT_EQ(t.header()[5], "activity");
    EXPECT_EQ(t.rows()[0].fields[5], "pitzer (auto)");
    EXPECT_EQ(t.header().back(), "SI Witherite (not available under Pitzer)");
    std::size_t barite = 0;
    for (std::size_t i = 0; i < t.header().size(); ++i) barite = t.header()[i] == "SI Barite" ? i : barite;
    ASSERT_NE(barite, 0u);
    // Neither water alone holds both barium and sulfate; every mix between does, supersaturated.
    EXPECT_EQ(t.rows().front().fields[barite], "");
    EXPECT_EQ(t.rows().back().fields[barite], "");
    EXPECT_GT(std::stod(t.rows()[2].fields[barite]), 1.0);

    const ProgramRun json = brinecast("mix " + kFormation + " " + kSeawater +
                                          " --steps 3 --by mass --temperature \"60 °C\" --pressure 200bar --format json",
                                      scratch);
    ASSERT_EQ(json.status, 0) << json.err;
    const rapidjson::Document d = parsed(json.out);
    ASSERT_EQ(d["points"].Size(), 3u);
    EXPECT_DOUBLE_EQ(d["points"][1]["temperatureK"].GetDouble(), 333.15);
    EXPECT_DOUBLE_EQ(d["points"][1]["pressurePa"].GetDouble(), 2e7);
    // One model for the sweep, chosen for both waters together.
    EXPECT_STREQ(d["inputs"]["Activities"].GetString(), "pitzer (auto)");
    EXPECT_STREQ(d["notAvailableUnderPitzer"][0].GetString(), "Strontianite");

    const ProgramRun html = brinecast("mix " + kFormation + " " + kSeawater + " --steps 3 --format html", scratch);
    EXPECT_EQ(html.status, 0) << html.err;
    EXPECT_TRUE(has(html.out, "<html") && has(html.out, "Barite")) << html.out;
    EXPECT_TRUE(has(html.out, "Not available under Pitzer")) << html.out;
}

TEST(ScaleProgram, ProfileFollowsThePathBothEndsIncluded) {
    ScratchDirectory scratch;
    const ProgramRun run =
        brinecast("profile " + kFormation + " --from \"120 °C,300 bar\" --to 40C,10bar --steps 3 --format json", scratch);
    ASSERT_EQ(run.status, 0) << run.err;
    const rapidjson::Document d = parsed(run.out);
    ASSERT_EQ(d["points"].Size(), 3u);
    EXPECT_NEAR(d["points"][0]["temperatureK"].GetDouble(), 393.15, 1e-9);
    EXPECT_NEAR(d["points"][2]["pressurePa"].GetDouble(), 1e6, 1e-6);
    EXPECT_NEAR(d["points"][1]["temperatureK"].GetDouble(), 353.15, 1e-9);
}

TEST(ScaleProgram, RefusesArgumentsItCannotUse) {
    const struct {
        std::string arguments;
        std::string named;  ///< what the message must name
    } cases[] = {
        {"mix " + kFormation + " " + kSeawater + " --steps 1", "--steps 1"},
        {"profile " + kFormation + " --from 120C,300bar --steps 0 --to 40C,1bar", "--steps 0"},
        {"profile " + kFormation + " --from 120C,300bar", "--to"},
        {"profile " + kFormation + " --from \"120 X,300 bar\" --to 40C,10bar", "120 X"},
        {"profile " + kFormation + " --from 120C --to 40C,10bar", "120C"},
        {"mix " + kFormation + " " + kSeawater + " --pressure \"3 furlongs\"", "3 furlongs"},
        {"mix " + kFormation + " " + kSeawater + " --by weight", "weight"},
        {"scale /no/such/water.json", "/no/such/water.json"},
        {"scale " + kFormation + " --balance-with Xx", "\"Xx\""},
    };
    ScratchDirectory scratch;
    for (const auto& c : cases) {
        const ProgramRun run = brinecast(c.arguments, scratch);
        EXPECT_EQ(run.status, 2) << c.arguments << "\n" << run.err;
        EXPECT_TRUE(has(run.err, c.named)) << c.arguments << "\n" << run.err;
        EXPECT_TRUE(run.out.empty()) << c.arguments;
    }
}
