#include "brinecast/reports/HtmlPlotJson.h"

#include "brinecast/readers/Utf8Text.h"

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <cstdio>
#include <limits>

using namespace korvane::Brinecast::cli;

namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();

rapidjson::Document parsed(const HtmlPlot& plot) {
    const std::string json = HtmlPlotJson::write(plot);
    EXPECT_FALSE(Utf8Text::firstInvalidByte(json)) << json;
    rapidjson::Document d;
    d.Parse<rapidjson::kParseFullPrecisionFlag>(json.c_str());
    EXPECT_FALSE(d.HasParseError()) << json;
    return d;
}

/// A JSON array of numbers and nulls as short text, e.g. "0.5,null".
std::string values(const rapidjson::Value& a) {
    std::string out;
    for (const auto& v : a.GetArray()) {
        char number[32] = "null";
        if (!v.IsNull()) std::snprintf(number, sizeof number, "%g", v.GetDouble());
        out += (out.empty() ? "" : ",") + std::string(number);
    }
    return out;
}

}  // namespace

TEST(HtmlPlotJson, PointsRunInIncreasingXAndEveryMissingValueIsNull) {
    struct Case { std::vector<double> x; std::vector<double> y; std::string jsonX, jsonY; };
    const Case cases[] = {
        {{0, 0.5, 1}, {0.1, kNaN, -kInf}, "0,0.5,1", "0.1,null,null"},
        {{3000, 1000, 2000}, {1, 3, 2}, "1000,2000,3000", "3,2,1"},  // depth given top-down
        {{0, kNaN, 1, kInf}, {1, 2, 3, 4}, "0,1", "1,3"},           // no x, no point
        {{0, 0.5, 1}, {0.2}, "0,0.5,1", "0.2,null,null"},           // a short series
        {{}, {}, "", ""},
    };
    for (const Case& c : cases) {
        HtmlPlot plot;
        plot.x = c.x;
        plot.series = {{"Calcite \xFF", c.y}};  // `parsed` checks the text is made valid UTF-8
        plot.referenceY = kNaN;
        const rapidjson::Document d = parsed(plot);
        EXPECT_TRUE(d["referenceY"].IsNull());  // no reference line
        EXPECT_EQ(values(d["x"]), c.jsonX);
        EXPECT_EQ(values(d["series"][0]["y"]), c.jsonY);
    }
}
