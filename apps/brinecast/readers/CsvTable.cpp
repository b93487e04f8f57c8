#include "brinecast/readers/CsvTable.h"

#include "brinecast/readers/InputError.h"
#include "brinecast/readers/ReadLimits.h"
#include "brinecast/readers/Utf8Text.h"

#include <algorithm>

namespace korvane::Brinecast::cli {
namespace {

std::string trimmed(const std::string& s) {
    const auto first = s.find_first_not_of(" \t");
    if (first == std::string::npos) return {};
    return s.substr(first, s.find_last_not_of(" \t") - first + 1);
}

bool isBlank(const std::vector<std::string>& fields) {
    return fields.size() == 1 && fields[0].empty();
}

/// Reads rows one character at a time; quoted fields may span lines.
class CsvScanner {
public:
    CsvScanner(const std::string& text, const std::string& fileName)
        : text_(text), fileName_(fileName) {
        if (text_.compare(0, 3, "\xEF\xBB\xBF") == 0) pos_ = 3;
    }

    bool next(CsvTable::Row& row) {
        if (pos_ >= text_.size()) return false;
        row.line = line_;
        row.fields.clear();
        std::string field;
        bool quoted = false;  // the current field was quoted: keep its blanks
        rowStart_ = pos_;
        while (pos_ < text_.size()) {
            if (pos_ - rowStart_ > ReadLimits::kMaxCsvRowBytes) tooLong(row.line);
            const char c = text_[pos_++];
            if (c == '"' && trimmed(field).empty() && !quoted) {
                field = readQuoted(row.line);
                quoted = true;
            } else if (c == ',') {
                row.fields.push_back(quoted ? field : trimmed(field));
                field.clear();
                quoted = false;
            } else if (c == '\n' || c == '\r') {
                if (c == '\r' && pos_ < text_.size() && text_[pos_] == '\n') ++pos_;
                ++line_;
                break;
            } else {
                field += c;
            }
        }
        row.fields.push_back(quoted ? field : trimmed(field));
        return true;
    }

private:
    [[noreturn]] void tooLong(std::size_t startLine) const {
        throw InputError(fileName_ + ":" + std::to_string(startLine) + ": the row is longer than " +
                         std::to_string(ReadLimits::kMaxCsvRowBytes) + " bytes, more than any "
                         "analysis needs; check for a quote (\") that is not closed, or a file "
                         "that is not a batch table");
    }

    std::string readQuoted(std::size_t startLine) {
        std::string value;
        while (pos_ < text_.size()) {
            if (pos_ - rowStart_ > ReadLimits::kMaxCsvRowBytes) tooLong(startLine);
            const char c = text_[pos_++];
            if (c == '"') {
                if (pos_ < text_.size() && text_[pos_] == '"') {
                    value += '"';
                    ++pos_;
                } else {
                    return value;
                }
            } else {
                if (c == '\n') ++line_;
                value += c;
            }
        }
        throw InputError(fileName_ + ":" + std::to_string(startLine) +
                         ": a quoted field is not closed; end it with a double quote (\")");
    }

    const std::string& text_;
    const std::string& fileName_;
    std::size_t pos_ = 0;
    std::size_t rowStart_ = 0;
    std::size_t line_ = 1;
};

}  // namespace

CsvTable CsvTable::parse(const std::string& text, const std::string& fileName) {
    if (text.size() > ReadLimits::kMaxFileBytes) {
        throw InputError(fileName + ": the file holds " + std::to_string(text.size()) +
                         " bytes, more than the " + std::to_string(ReadLimits::kMaxFileBytes) +
                         " an analysis file may; split it into smaller files");
    }
    if (const auto bad = Utf8Text::firstInvalidByte(text)) {
        const auto line = 1 + std::count(text.begin(), text.begin() + static_cast<long>(*bad), '\n');
        throw InputError(fileName + ":" + std::to_string(line) + ": byte " + std::to_string(*bad) +
                         " is not valid UTF-8; save the file as UTF-8 (spreadsheets offer "
                         "\"CSV UTF-8\")");
    }
    CsvTable table;
    CsvScanner scanner(text, fileName);
    Row row;
    bool haveHeader = false;
    while (scanner.next(row)) {
        if (isBlank(row.fields)) continue;
        if (!haveHeader) {
            table.header_ = row.fields;
            haveHeader = true;
        } else {
            if (table.rows_.size() == ReadLimits::kMaxAnalyses) {
                throw InputError(fileName + ":" + std::to_string(row.line) + ": more than " +
                                 std::to_string(ReadLimits::kMaxAnalyses) +
                                 " rows, more than one batch file may hold; split it into "
                                 "smaller files");
            }
            table.rows_.push_back(row);
        }
    }
    if (!haveHeader) {
        throw InputError(fileName + ": the file is empty; a batch file starts with a header row "
                                    "naming its columns (name, temperature, ..., Na, Cl, ...)");
    }
    return table;
}

}  // namespace korvane::Brinecast::cli
