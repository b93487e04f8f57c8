#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace korvane::Brinecast::cli {

/// Rows of text cells written in aligned columns: text to the left, numbers to the right.
class TextTable {
public:
    /// `numeric[i]` right-aligns column i.
    TextTable(std::vector<std::string> header, std::vector<bool> numeric);

    void add(std::vector<std::string> row);
    /// Writes the header, a rule and the rows, each line starting with `indent`.
    void write(std::ostream& out, const std::string& indent) const;

private:
    std::vector<std::vector<std::string>> rows_;
    std::vector<bool> numeric_;
};

}  // namespace korvane::Brinecast::cli
