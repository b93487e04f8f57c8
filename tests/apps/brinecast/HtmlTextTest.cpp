#include "brinecast/reports/HtmlText.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

using korvane::Brinecast::cli::HtmlText;

namespace {
const std::string kReplacement = "\xEF\xBF\xBD";
}

TEST(HtmlText, MarkupQuotesAndBadBytesBecomeTextThatAPageShowsAsIs) {
    const std::pair<std::string, std::string> cases[] = {
        {"Calcite", "Calcite"},
        {"<script>alert(1)</script>", "&lt;script&gt;alert(1)&lt;/script&gt;"},
        {"a\" onclick='x' &amp;", "a&quot; onclick=&#39;x&#39; &amp;amp;"},
        {"caf\xC3\xA9 \xE2\x80\x93 m\xC2\xB3", "caf\xC3\xA9 \xE2\x80\x93 m\xC2\xB3"},  // é – ³ kept
        {"well\xFF", "well" + kReplacement},                                      // not UTF-8
        {std::string("a\0b\x07" "c\x7F", 6), "a" + kReplacement + "b" + kReplacement + "c" + kReplacement},
        {"next\xC2\x85line", "next" + kReplacement + "line"},  // C1 control U+0085
        {"tab\tand\r\nbreaks", "tab\tand\r\nbreaks"},
    };
    for (const auto& [text, html] : cases) EXPECT_EQ(HtmlText::escaped(text), html) << text;
}

TEST(HtmlText, JsonInAScriptCannotCloseItOrBreakALine) {
    const std::pair<std::string, std::string> cases[] = {
        {R"({"name":"</script><!--"})", R"({"name":"\u003c/script\u003e\u003c!--"})"},
        {R"(["a&b"])", R"(["a\u0026b"])"},
        {"[\"\xE2\x80\xA8\xE2\x80\xA9\"]", R"(["\u2028\u2029"])"},
        {"[\"\xE2\x80\x93\",1e-7,null]", "[\"\xE2\x80\x93\",1e-7,null]"},
    };
    for (const auto& [json, safe] : cases) EXPECT_EQ(HtmlText::scriptSafeJson(json), safe) << json;
}
