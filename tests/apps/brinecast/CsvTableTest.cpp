#include "brinecast/CsvTable.h"
#include "brinecast/InputError.h"

#include <gtest/gtest.h>

using korvane::Brinecast::cli::CsvTable;
using korvane::Brinecast::cli::InputError;

TEST(CsvTable, QuotedFieldsKeepCommasQuotesAndLineBreaks) {
    const CsvTable t = CsvTable::parse(
        "\xEF\xBB\xBFname, Na\r\n"
        "\"Well 3, \"\"deep\"\"\", 12.5\r\n"
        "\n"
        "\"two\nlines\",  7 \n"
        "last,",
        "batch.csv");
    ASSERT_EQ(t.header(), (std::vector<std::string>{"name", "Na"}));
    ASSERT_EQ(t.rows().size(), 3u);
    EXPECT_EQ(t.rows()[0].fields, (std::vector<std::string>{"Well 3, \"deep\"", "12.5"}));
    EXPECT_EQ(t.rows()[0].line, 2u);
    EXPECT_EQ(t.rows()[1].fields, (std::vector<std::string>{"two\nlines", "7"}));
    EXPECT_EQ(t.rows()[1].line, 4u);
    EXPECT_EQ(t.rows()[2].line, 6u);  // line numbers count the break inside the quotes
    EXPECT_EQ(t.rows()[2].fields, (std::vector<std::string>{"last", ""}));
}

TEST(CsvTable, UnreadableFilesNameTheFileAndLine) {
    struct Case { const char* text; const char* message; };
    for (const Case& c : {Case{"", "batch.csv: the file is empty"},
                          Case{"\n \n", "batch.csv: the file is empty"},
                          Case{"name\n\"open", "batch.csv:2: a quoted field is not closed"}}) {
        try {
            CsvTable::parse(c.text, "batch.csv");
            ADD_FAILURE() << "accepted: " << c.text;
        } catch (const InputError& e) {
            EXPECT_EQ(std::string(e.what()).rfind(c.message, 0), 0u) << e.what();
        }
    }
}
