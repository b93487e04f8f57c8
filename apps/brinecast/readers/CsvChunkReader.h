#pragma once

#include <cstddef>
#include <istream>
#include <string>

namespace korvane::Brinecast::cli {

/// Reads a CSV file a few rows at a time, so that a batch of any length is held in memory only
/// one chunk at a time. Each chunk is handed out as a table of its own: the header, then blank
/// lines where the rows before it were (the table reader skips them), so that every row keeps
/// the line number it has in the file. A quoted field may span lines.
class CsvChunkReader {
public:
    explicit CsvChunkReader(std::istream& in);

    /// The header and the next `rows` rows that are not blank, as described above; empty once
    /// the file has no more rows (or no header).
    std::string next(std::size_t rows);

    /// Rows handed out so far.
    std::size_t rowsRead() const { return rowsRead_; }

private:
    /// One row, which may span lines, with its line break; false at the end of the file.
    bool readRow(std::string& row, std::size_t& lineBreaks, bool& blank);

    std::istream& in_;
    std::string header_;           ///< the header row, ending in one '\n'
    std::size_t nextLine_ = 1;     ///< line number of the next row in the file
    std::size_t headerLines_ = 0;  ///< lines the header takes
    std::size_t rowsRead_ = 0;
    bool started_ = false;
};

}  // namespace korvane::Brinecast::cli
