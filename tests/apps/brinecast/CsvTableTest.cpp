#include "brinecast/readers/CsvTable.h"

#include <gtest/gtest.h>

using korvane::Brinecast::cli::CsvTable;

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
