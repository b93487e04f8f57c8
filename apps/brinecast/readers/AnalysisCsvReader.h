#pragma once

#include "brinecast/readers/Analysis.h"
#include "brinecast/readers/ComponentNames.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace korvane::Brinecast::cli {

/// Reads a batch of analyses, one per row of a CSV table. Columns: name, description,
/// temperature, temperature_unit, pressure, pressure_unit, density (g/cm3), unit, then one
/// column per element or lab ion in that unit and one per gas in mol/kgw. An empty cell is an
/// absent component (or, for density, one to be computed).
class AnalysisCsvReader {
public:
    struct Row {
        std::size_t line = 0;
        std::optional<Analysis> analysis;  ///< empty when the row could not be read
        std::string name;                  ///< the row's name cell, also for a row not read
        std::string error;                 ///< why, naming the line, column and value
    };

    explicit AnalysisCsvReader(const ComponentNames& names) : names_(names) {}

    /// One entry per data row, in file order; a bad row is kept with its error. A problem with
    /// the file as a whole (empty, unknown or missing column) throws `InputError`.
    std::vector<Row> read(const std::string& text, const std::string& fileName) const;

private:
    const ComponentNames& names_;
};

}  // namespace korvane::Brinecast::cli
