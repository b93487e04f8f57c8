#pragma once

#include "FrameSpeciator.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace korvane::Brinecast::python {

/// Results as columns named as in the command line's CSV report, one entry per analysis in
/// input order: pH, status, message, the conditions, the solver's diagnostics, then
/// "<species> (mol/kgw)" for every species any analysis has, in order of first appearance, then
/// "SI <mineral>" likewise for every mineral whose components an analysis holds.
/// NaN (or "") where a row has no value.
class FrameReport {
public:
    struct Column {
        std::string name;
        bool text = false;
        std::vector<double> numbers;
        std::vector<std::string> texts;
    };

    /// For a table of `rows` rows, filled part by part.
    explicit FrameReport(std::size_t rows);
    /// The rows from `first` on.
    void add(std::size_t first, const std::vector<FrameRow>& part);
    /// The columns, once every row is added.
    std::vector<Column> take() { return std::move(columns_); }

private:
    /// Writes the named values of each row of `part` into the column `label(name)`, adding the
    /// column at its first appearance.
    void addNamed(std::size_t first, const std::vector<FrameRow>& part,
                  std::vector<NameValue> FrameRow::*values, std::string (*label)(const std::string&));

    std::size_t rows_;
    std::vector<Column> columns_;
    std::unordered_map<std::string, std::size_t> position_;  ///< column name -> its column
};

}  // namespace korvane::Brinecast::python
