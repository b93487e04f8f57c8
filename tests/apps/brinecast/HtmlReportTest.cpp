#include "brinecast/reports/HtmlReport.h"

#include "brinecast/readers/Utf8Text.h"

#include <gtest/gtest.h>

#include <limits>
#include <regex>

using namespace korvane::Brinecast::cli;

namespace {

const std::string kHostile = "<script>alert(1)</script>\"'&\xFF";

std::size_t count(const std::string& text, const std::string& part) {
    std::size_t n = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++n;
    return n;
}

/// Every text of the page hostile, two plots and one with nothing to plot.
HtmlDocument hostileDocument() {
    HtmlPlot plot{kHostile, kHostile, kHostile, {0, 1}, {{kHostile, {0.5, -0.5}}}, 0.0};
    HtmlPlot empty{"Nothing", "x", "y", {std::numeric_limits<double>::quiet_NaN()}, {}, 0.0};
    HtmlTable table{kHostile, {"Mineral", "SI"}, {false, true}, {{kHostile, "0.5"}, {"Barite"}}};
    HtmlSection section{kHostile, {{kHostile, kHostile}}, {table}, {plot, plot, empty}};
    return HtmlDocument{kHostile, {section}};
}

}  // namespace

TEST(HtmlReport, HostileTextShowsAsTextAndThePageStaysValidUtf8) {
    const std::string page = HtmlReport::render(hostileDocument());
    EXPECT_FALSE(Utf8Text::firstInvalidByte(page));
    EXPECT_EQ(count(page, "alert(1)</script>"), 0u);
    EXPECT_EQ(count(page, "&lt;script&gt;alert(1)&lt;/script&gt;&quot;&#39;&amp;\xEF\xBF\xBD"),
              13u);  // title twice, heading, fact label and value, caption, cell, and per plot
                     // with points its caption, its chart's label and its reference line's
    // The chart library, the page's script and one block of numbers per plot with points.
    EXPECT_EQ(count(page, "<script"), 4u);
    EXPECT_EQ(count(page, "</script>"), 4u);
    EXPECT_EQ(count(page, "class=\"plot-data\""), 2u);
    EXPECT_EQ(count(page, "No points to plot."), 1u);
}

TEST(HtmlReport, PageIsSelfContained) {
    const std::string page = HtmlReport::render(hostileDocument());
    EXPECT_EQ(page.rfind("<!DOCTYPE html>", 0), 0u);
    EXPECT_NE(page.find("var uPlot="), std::string::npos);  // the library itself, inlined
    EXPECT_NE(page.find(".uplot"), std::string::npos);      // and its style
    EXPECT_NE(page.find("Permission is hereby granted"), std::string::npos);  // and its licence
    EXPECT_NE(page.find("default-src 'none'"), std::string::npos);
    const std::regex fetch(R"((src|href)\s*=\s*["']?\s*(https?:|//|file:))", std::regex::icase);
    EXPECT_FALSE(std::regex_search(page, fetch));
}

TEST(HtmlReport, TableRowsAreFilledToTheHeaderAndNumbersAlignRight) {
    const std::string page = HtmlReport::render(hostileDocument());
    EXPECT_NE(page.find("<tr><td>Barite</td><td class=\"num\"></td></tr>"), std::string::npos);
    EXPECT_NE(page.find("<th class=\"num\">SI</th>"), std::string::npos);
}
