#pragma once
// Reads the reference tables of the database tests: tab-separated, '#' lines are comments, the
// first other line names the columns.

#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace brinecast_test {

using TsvRow = std::map<std::string, std::string>;

inline std::vector<std::string> splitFields(const std::string& line, char separator) {
    std::vector<std::string> fields;
    std::string field;
    std::istringstream in(line);
    while (std::getline(in, field, separator)) fields.push_back(field);
    if (!line.empty() && line.back() == separator) fields.emplace_back();
    return fields;
}

inline std::vector<TsvRow> readTsv(const std::string& path) {
    std::ifstream file(path);
    if (!file) throw std::runtime_error("cannot open reference table " + path);
    std::vector<std::string> columns;
    std::vector<TsvRow> rows;
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#') continue;
        const std::vector<std::string> fields = splitFields(line, '\t');
        if (columns.empty()) {
            columns = fields;
            continue;
        }
        TsvRow row;
        for (std::size_t i = 0; i < columns.size(); ++i) row[columns[i]] = i < fields.size() ? fields[i] : "";
        rows.push_back(row);
    }
    return rows;
}

/// "1.5, -2" or "1.5 -2" as numbers; an empty text is an empty list.
inline std::vector<double> numbers(const std::string& text) {
    std::vector<double> values;
    std::string normalised = text;
    for (char& c : normalised) {
        if (c == ',') c = ' ';
    }
    std::istringstream in(normalised);
    for (std::string item; in >> item;) values.push_back(std::stod(item));
    return values;
}

}  // namespace brinecast_test
