#include "brinecast/readers/Utf8Text.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

using korvane::Brinecast::cli::Utf8Text;

namespace {
const std::string kReplacement = "\xEF\xBF\xBD";
}

TEST(Utf8Text, InvalidBytesAreFoundAndReplacedValidOnesKept) {
    struct Case { std::string text; std::optional<std::size_t> bad; std::string repaired; };
    const Case cases[] = {
        {"Ca++ brine", std::nullopt, "Ca++ brine"},
        {"caf\xC3\xA9 \xE2\x80\x93 \xF0\x9F\x92\xA7", std::nullopt, "caf\xC3\xA9 \xE2\x80\x93 \xF0\x9F\x92\xA7"},
        {std::string("a\0b", 3), std::nullopt, std::string("a\0b", 3)},
        {"\xC3\x28", 0, kReplacement + "("},                // lead byte without its continuation
        {"well\xFF", 4, "well" + kReplacement},             // never a UTF-8 byte (Latin-1 ÿ)
        {"\xC0\xAF", 0, kReplacement + kReplacement},       // overlong "/"
        {"\xED\xA0\x80", 0, kReplacement + kReplacement + kReplacement},  // a surrogate half
        {"a\xE2\x82", 1, "a" + kReplacement + kReplacement},  // cut short at the end
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Utf8Text::firstInvalidByte(c.text), c.bad) << c.text;
        EXPECT_EQ(Utf8Text::repaired(c.text), c.repaired) << c.text;
        EXPECT_FALSE(Utf8Text::firstInvalidByte(Utf8Text::repaired(c.text))) << c.text;
    }
}

TEST(Utf8Text, OneLineTurnsEachRunOfControlCharactersIntoOneSpace) {
    const std::pair<std::string, std::string> cases[] = {
        {"Error evaluating model. \n.", "Error evaluating model. ."},
        {"two\r\nlines", "two lines"},
        {"\n\tleading and trailing \n", "leading and trailing"},
        {"bell\x07 and \x1B[31mcolour", "bell and [31mcolour"},
        {"kept  double  blanks", "kept  double  blanks"},
        {"bad \xFF\nbyte", "bad " + kReplacement + " byte"},
    };
    for (const auto& [text, line] : cases) EXPECT_EQ(Utf8Text::oneLine(text), line) << text;
}
