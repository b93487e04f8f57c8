#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace korvane::Brinecast::python {

/// A table of analyses as Python hands it over: numeric columns as contiguous float64 arrays
/// (NaN is an empty cell), text columns as strings, and the keywords that stand in for a text
/// column the table lacks. The arrays belong to the caller and outlive the calculation.
struct FrameColumns {
    std::size_t rows = 0;
    /// Row labels for messages ("row 17: column \"Na\": ...").
    std::vector<std::string> labels;
    std::vector<std::pair<std::string, const double*>> numbers;
    std::vector<std::pair<std::string, std::vector<std::string>>> texts;
    /// Used when the table has no such column; empty when not given.
    std::string unit;
    std::string temperatureUnit = "K";
    std::string pressureUnit = "Pa";
};

}  // namespace korvane::Brinecast::python
