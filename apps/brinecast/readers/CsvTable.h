#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace korvane::Brinecast::cli {

/// A comma-separated table: a header row and data rows, each row with the line it starts on.
/// Fields may be quoted ("a, b" and "" for a quote inside); unquoted fields are trimmed of
/// blanks; blank lines are skipped; a UTF-8 byte-order mark and CRLF line ends are accepted.
class CsvTable {
public:
    struct Row {
        std::size_t line = 0;
        std::vector<std::string> fields;
    };

    /// Throws `InputError` naming `fileName` and the line for an unterminated quote or a table
    /// with no header.
    static CsvTable parse(const std::string& text, const std::string& fileName);

    const std::vector<std::string>& header() const { return header_; }
    const std::vector<Row>& rows() const { return rows_; }

private:
    std::vector<std::string> header_;
    std::vector<Row> rows_;
};

}  // namespace korvane::Brinecast::cli
