#include "brinecast/reports/TextTable.h"

#include <algorithm>
#include <utility>

namespace korvane::Brinecast::cli {
namespace {

/// Display width: UTF-8 continuation bytes take no column ("°" is one).
std::size_t width(const std::string& s) {
    return static_cast<std::size_t>(
        std::count_if(s.begin(), s.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

}  // namespace

TextTable::TextTable(std::vector<std::string> header, std::vector<bool> numeric)
    : numeric_(std::move(numeric)) {
    numeric_.resize(header.size(), false);
    rows_.push_back(std::move(header));
}

void TextTable::add(std::vector<std::string> row) {
    row.resize(numeric_.size());
    rows_.push_back(std::move(row));
}

void TextTable::write(std::ostream& out, const std::string& indent) const {
    std::vector<std::size_t> widths(numeric_.size(), 0);
    for (const auto& row : rows_) {
        for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], width(row[i]));
    }
    auto line = [&](const std::vector<std::string>& row) {
        std::string text = indent;
        for (std::size_t i = 0; i < row.size(); ++i) {
            const std::string pad(widths[i] - width(row[i]), ' ');
            text += numeric_[i] ? pad + row[i] : row[i] + (i + 1 < row.size() ? pad : "");
            if (i + 1 < row.size()) text += "  ";
        }
        text.erase(text.find_last_not_of(' ') + 1);
        out << text << '\n';
    };
    line(rows_.front());
    std::size_t total = 0;
    for (std::size_t w : widths) total += w;
    out << indent << std::string(total + 2 * (widths.size() - 1), '-') << '\n';
    for (std::size_t r = 1; r < rows_.size(); ++r) line(rows_[r]);
}

}  // namespace korvane::Brinecast::cli
