#pragma once

#include "brinecast/readers/Analysis.h"
#include "brinecast/readers/ComponentNames.h"

#include <string>
#include <vector>

namespace korvane::Brinecast::cli {

/// Reads analyses from JSON: one analysis object, or an array of them.
///
///   {"name": "...", "description": "...",
///    "temperature": {"value": 25, "unit": "°C"}, "pressure": {"value": 1, "unit": "bar"},
///    "density": 1.02, "unit": "mg/L",
///    "elements": {"Na+": 10890, "Cl-": 19766}, "gases": {"CO2": 0.001}}
///
/// "density" (g/cm3), "description", "name" and "gases" (mol/kgw) may be left out. Any problem
/// throws `InputError` naming the file, the analysis and the field.
class AnalysisJsonReader {
public:
    explicit AnalysisJsonReader(const ComponentNames& names) : names_(names) {}

    std::vector<Analysis> read(const std::string& text, const std::string& fileName) const;

private:
    const ComponentNames& names_;
};

}  // namespace korvane::Brinecast::cli
