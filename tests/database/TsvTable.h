#pragma once
// Reads the reference tables of the tests: tab-separated, '#' lines are comments, the first other
// line names the columns, a field missing at the end of a row reads as empty.

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace brinecast_test {

using TsvRow = std::map<std::string, std::string>;

inline std::vector<TsvRow> readTsv(const std::string& path) {
    std::ifstream file(path);
    if (!file) throw std::runtime_error("cannot open reference table " + path);
    std::vector<std::string> columns;
    std::vector<TsvRow> rows;
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#') continue;
        std::vector<std::string> fields;
        std::istringstream in(line);
        for (std::string field; std::getline(in, field, '\t');) fields.push_back(field);
        if (columns.empty()) {
            columns = fields;
            continue;
        }
        TsvRow& row = rows.emplace_back();
        for (std::size_t i = 0; i < columns.size(); ++i) row[columns[i]] = i < fields.size() ? fields[i] : "";
    }
    return rows;
}

/// "1.5, -2" or "1.5 -2" as numbers; an empty text is an empty list.
inline std::vector<double> numbers(std::string text) {
    std::replace(text.begin(), text.end(), ',', ' ');
    std::istringstream in(text);
    return {std::istream_iterator<double>(in), std::istream_iterator<double>()};
}

}  // namespace brinecast_test
