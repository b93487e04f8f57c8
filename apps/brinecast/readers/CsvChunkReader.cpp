#include "brinecast/readers/CsvChunkReader.h"

namespace korvane::Brinecast::cli {

CsvChunkReader::CsvChunkReader(std::istream& in) : in_(in) {}

bool CsvChunkReader::readRow(std::string& row, std::size_t& lineBreaks, bool& blank) {
    row.clear();
    lineBreaks = 0;
    blank = true;
    bool quoted = false;      // inside a quoted field
    bool fieldStart = true;   // only blanks since the last comma or line start
    for (int c = in_.get(); c != std::char_traits<char>::eof(); c = in_.get()) {
        row += static_cast<char>(c);
        if (c == '\r' || c == '\n') {
            if (c == '\r' && in_.peek() == '\n') row += static_cast<char>(in_.get());
            ++lineBreaks;
            if (!quoted) return true;
            continue;
        }
        if (c != ' ' && c != '\t') blank = false;
        if (quoted) {
            if (c == '"' && in_.peek() == '"') row += static_cast<char>(in_.get());
            else if (c == '"') quoted = false;
        } else if (c == '"' && fieldStart) {
            quoted = true;
            fieldStart = false;
        } else if (c == ',') {
            fieldStart = true;
        } else if (c != ' ' && c != '\t') {
            fieldStart = false;
        }
    }
    return !row.empty();
}

std::string CsvChunkReader::next(std::size_t rows) {
    std::string row;
    std::size_t lineBreaks = 0;
    bool blank = true;
    if (!started_) {
        started_ = true;
        if (!readRow(header_, lineBreaks, blank)) return {};
        // One '\n' ends the header whatever the file uses, so the padding below cannot merge
        // with a lone '\r' into one line break.
        while (!header_.empty() && (header_.back() == '\n' || header_.back() == '\r')) header_.pop_back();
        header_ += '\n';
        headerLines_ = lineBreaks == 0 ? 1 : lineBreaks;
        nextLine_ = 1 + headerLines_;
    }
    std::string chunk;
    std::size_t taken = 0;
    std::size_t firstLine = 0;
    while (taken < rows && readRow(row, lineBreaks, blank)) {
        if (!blank) {
            if (taken == 0) firstLine = nextLine_;
            chunk += row;
            ++taken;
        } else if (taken > 0) {
            chunk += row;  // kept, so that the rows after it keep their line numbers
        }
        nextLine_ += lineBreaks;
    }
    if (taken == 0) return {};
    rowsRead_ += taken;
    // A row that ends the file without a line break is still a whole row.
    return header_ + std::string(firstLine - 1 - headerLines_, '\n') + chunk;
}

}  // namespace korvane::Brinecast::cli
