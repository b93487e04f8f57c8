#include "FrameReader.h"

#include "brinecast/readers/AnalysisBuilder.h"
#include "brinecast/readers/InputError.h"

#include <cmath>
#include <cstring>
#include <map>

namespace korvane::Brinecast::python {
namespace {

using cli::InputError;

/// Numbers that are no amount: the conditions, and what a lab measured beside the analysis.
const char* const kConditionColumns[] = {"temperature", "pressure", "density", "ph", "alkalinity_eq_per_kgw"};

std::string columnName(const std::string& name) { return "column \"" + name + "\""; }

bool isConditionColumn(const std::string& name) {
    for (const char* c : kConditionColumns) {
        if (name == c) return true;
    }
    return false;
}

}  // namespace

const std::vector<std::string>& FrameReader::textColumns() {
    static const std::vector<std::string> names{"name", "description", "unit", "temperature_unit",
                                                "pressure_unit"};
    return names;
}

FrameReader::FrameReader(const cli::ComponentNames& names, const FrameColumns& columns)
    : names_(names), columns_(columns) {
    std::map<std::string, std::string> seen;  // element (or "C carbonate") -> column
    for (const auto& [name, values] : columns.texts) {
        bool known = false;
        for (const std::string& t : textColumns()) known = known || t == name;
        if (!known) {
            throw InputError(columnName(name) + " holds text, but only name, description, unit, "
                             "temperature_unit and pressure_unit may; give amounts as numbers");
        }
        if (values.size() != columns.rows) throw InputError(columnName(name) + " is not as long as the table");
    }
    for (const auto& [name, values] : columns.numbers) {
        if (!seen.emplace("column " + name, name).second) {
            throw InputError(columnName(name) + " appears twice; name each column once");
        }
        if (isConditionColumn(name)) continue;
        if (names.isGas(name)) {
            amounts_.push_back({&name, columnName(name), values, true});
            continue;
        }
        const std::optional<cli::ComponentNames::Element> e = names.element(name);
        if (!e) {
            throw InputError(columnName(name) + " is not a known column, element or ion; use "
                             "name, description, temperature, temperature_unit, pressure, "
                             "pressure_unit, density, ph, alkalinity_eq_per_kgw, unit, a gas (" + names.acceptedGases() +
                             ") or an element: " + names.acceptedElements());
        }
        const std::string key = e->name + (e->carbonate ? " carbonate" : "");
        if (!seen.emplace(key, name).second) {
            throw InputError(columnName(name) + " gives " + e->name + " a second time (first in "
                             "column \"" + seen[key] + "\"); give each element once");
        }
        amounts_.push_back({&name, columnName(name), values, false});
    }
    temperature_ = number("temperature");
    pressure_ = number("pressure");
    density_ = number("density");
    pH_ = number("ph");
    alkalinity_ = number("alkalinity_eq_per_kgw");
    names_column_ = text("name");
    descriptions_ = text("description");
    units_ = text("unit");
    temperatureUnits_ = text("temperature_unit");
    pressureUnits_ = text("pressure_unit");
}

const double* FrameReader::number(const char* name) const {
    for (const auto& [n, values] : columns_.numbers) {
        if (n == name) return values;
    }
    return nullptr;
}

const std::vector<std::string>* FrameReader::text(const char* name) const {
    for (const auto& [n, values] : columns_.texts) {
        if (n == name) return &values;
    }
    return nullptr;
}

Constraints FrameReader::constraints(std::size_t row) const {
    Constraints c;
    if (pH_ && !std::isnan(pH_[row])) c.pH = pH_[row];
    if (alkalinity_ && !std::isnan(alkalinity_[row])) c.alkalinity = alkalinity_[row];
    return c;
}

cli::AnalysisResult FrameReader::read(std::size_t row) const {
    const std::string source = "row " + columns_.labels.at(row);
    cli::AnalysisResult result;
    result.analysis.source = source;
    try {
        cli::AnalysisBuilder b(names_, source, source);
        // A text column wins over its keyword; the keyword stands in for a column not given.
        auto cell = [row](const std::vector<std::string>* column, const std::string& keyword) -> const std::string& {
            return column ? (*column)[row] : keyword;
        };
        static const std::string temperature = columnName("temperature");
        static const std::string temperatureUnit = columnName("temperature_unit");
        static const std::string pressure = columnName("pressure");
        static const std::string pressureUnit = columnName("pressure_unit");
        static const std::string density = columnName("density");
        static const std::string unit = columnName("unit");
        if (names_column_ && !(*names_column_)[row].empty()) b.name((*names_column_)[row]);
        if (descriptions_) b.description((*descriptions_)[row]);
        if (temperature_ && !std::isnan(temperature_[row])) {
            b.temperature(temperature_[row], cell(temperatureUnits_, columns_.temperatureUnit),
                          temperature, temperatureUnit);
        }
        if (pressure_ && !std::isnan(pressure_[row])) {
            b.pressure(pressure_[row], cell(pressureUnits_, columns_.pressureUnit), pressure, pressureUnit);
        }
        if (density_ && !std::isnan(density_[row])) b.density(density_[row], density);
        if (const std::string& u = cell(units_, columns_.unit); !u.empty()) b.unit(u, unit);
        for (const Amount& a : amounts_) {
            const double value = a.values[row];
            if (std::isnan(value)) continue;  // an empty cell: the component is absent
            if (a.gas) {
                b.gas(*a.name, value, a.where);
            } else {
                b.element(*a.name, value, a.where);
            }
        }
        result.analysis = b.build();
    } catch (const InputError& e) {
        result.status = cli::AnalysisResult::Status::Invalid;
        result.error = e.what();
    }
    return result;
}

}  // namespace korvane::Brinecast::python
