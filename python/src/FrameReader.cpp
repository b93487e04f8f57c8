#include "FrameReader.h"

#include "brinecast/AnalysisBuilder.h"
#include "brinecast/InputError.h"

#include <cmath>
#include <cstring>
#include <map>

namespace korvane::Brinecast::python {
namespace {

using cli::InputError;

const char* const kConditionColumns[] = {"temperature", "pressure", "density"};

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
            amounts_.push_back({&name, values, true});
            continue;
        }
        const std::optional<cli::ComponentNames::Element> e = names.element(name);
        if (!e) {
            throw InputError(columnName(name) + " is not a known column, element or ion; use "
                             "name, description, temperature, temperature_unit, pressure, "
                             "pressure_unit, density, unit, a gas (" + names.acceptedGases() +
                             ") or an element: " + names.acceptedElements());
        }
        const std::string key = e->name + (e->carbonate ? " carbonate" : "");
        if (!seen.emplace(key, name).second) {
            throw InputError(columnName(name) + " gives " + e->name + " a second time (first in "
                             "column \"" + seen[key] + "\"); give each element once");
        }
        amounts_.push_back({&name, values, false});
    }
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

cli::AnalysisResult FrameReader::read(std::size_t row) const {
    const std::string source = "row " + columns_.labels.at(row);
    cli::AnalysisResult result;
    result.analysis.source = source;
    try {
        cli::AnalysisBuilder b(names_, source, source);
        // A text column wins over its keyword; the keyword stands in for a column not given.
        auto cell = [&](const char* column, const std::string& keyword) {
            const std::vector<std::string>* values = text(column);
            return values ? (*values)[row] : keyword;
        };
        auto where = [](const char* column) { return columnName(column); };
        if (const auto* names = text("name"); names && !(*names)[row].empty()) b.name((*names)[row]);
        if (const auto* descriptions = text("description")) b.description((*descriptions)[row]);
        if (const double* t = number("temperature"); t && !std::isnan(t[row])) {
            b.temperature(t[row], cell("temperature_unit", columns_.temperatureUnit),
                          where("temperature"), where("temperature_unit"));
        }
        if (const double* p = number("pressure"); p && !std::isnan(p[row])) {
            b.pressure(p[row], cell("pressure_unit", columns_.pressureUnit), where("pressure"),
                       where("pressure_unit"));
        }
        if (const double* d = number("density"); d && !std::isnan(d[row])) b.density(d[row], where("density"));
        if (const std::string unit = cell("unit", columns_.unit); !unit.empty()) b.unit(unit, where("unit"));
        for (const Amount& a : amounts_) {
            const double value = a.values[row];
            if (std::isnan(value)) continue;  // an empty cell: the component is absent
            if (a.gas) {
                b.gas(*a.name, value, columnName(*a.name));
            } else {
                b.element(*a.name, value, columnName(*a.name));
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
