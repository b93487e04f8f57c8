#include "FrameReader.h"

#include "brinecast/readers/AnalysisBuilder.h"
#include "brinecast/readers/InputError.h"
#include "brinecast/readers/UnitNames.h"

#include <cmath>
#include <cstring>
#include <map>

namespace korvane::Brinecast::python {
namespace {

using cli::InputError;

/// Numbers that are no amount: the conditions, and what a lab measured beside the analysis.
const char* const kConditionColumns[] = {"temperature", "pressure", "density", "pH", "ph", "alkalinity",
                                         "alkalinity_eq_per_kgw"};

std::string columnName(const std::string& name) { return "column \"" + name + "\""; }

bool isConditionColumn(const std::string& name) {
    for (const char* c : kConditionColumns) {
        if (name == c) return true;
    }
    return false;
}

}  // namespace

const std::vector<std::string>& FrameReader::textColumns() {
    static const std::vector<std::string> names{"name",          "description",     "unit", "temperature_unit",
                                                "pressure_unit", "alkalinity_unit", "balance_with"};
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
                             "temperature_unit, pressure_unit, alkalinity_unit and balance_with may; give "
                             "amounts as numbers");
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
                             "pressure_unit, density, pH, alkalinity, alkalinity_unit, balance_with, unit, a gas (" + names.acceptedGases() +
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
    pH_ = number("pH");
    alkalinity_ = number("alkalinity");
    alkalinityEqPerKgw_ = number("alkalinity_eq_per_kgw");
    // The older names stay accepted, but one quantity comes from one column.
    if (pH_ && number("ph")) throw InputError("columns \"pH\" and \"ph\" both give the measured pH; keep one");
    if (!pH_) pH_ = number("ph");
    if (alkalinity_ && alkalinityEqPerKgw_) {
        throw InputError("columns \"alkalinity\" and \"alkalinity_eq_per_kgw\" both give the measured "
                         "alkalinity; keep one");
    }
    alkalinityUnits_ = text("alkalinity_unit");
    balanceWith_ = text("balance_with");
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

Constraints FrameReader::constraints(std::size_t row, const cli::AnalysisResult& read) const {
    Constraints c;
    const cli::Analysis& a = read.analysis;
    c.pH = a.pH;
    c.balanceWith = a.balanceWith;
    // meq/L to eq/kgw through the water a litre of this brine holds, as the program converts it.
    if (a.alkalinityMeqPerL) c.alkalinity = *a.alkalinityMeqPerL * 1e-3 / read.solids.kgWaterPerL;
    if (alkalinityEqPerKgw_ && !std::isnan(alkalinityEqPerKgw_[row])) c.alkalinity = alkalinityEqPerKgw_[row];
    return c;
}

void FrameReader::measured(cli::AnalysisBuilder& b, std::size_t row) const {
    static const std::string pH = columnName("pH");
    static const std::string alkalinity = columnName("alkalinity");
    static const std::string alkalinityUnit = columnName("alkalinity_unit");
    static const std::string balanceWith = columnName("balance_with");
    if (pH_ && !std::isnan(pH_[row])) b.measuredPH(pH_[row], pH);
    if (alkalinity_ && !std::isnan(alkalinity_[row])) {
        const std::string noUnit;
        const std::string& unit = alkalinityUnits_ ? (*alkalinityUnits_)[row] : noUnit;
        if (unit.empty()) {
            b.fail(alkalinity, "has no unit; add a column \"alkalinity_unit\" holding " +
                                   cli::UnitNames::alkalinityAccepted());
        }
        b.alkalinity(alkalinity_[row], unit, alkalinity, alkalinityUnit);
    }
    if (balanceWith_ && !(*balanceWith_)[row].empty()) b.balanceWith((*balanceWith_)[row], balanceWith);
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
        measured(b, row);
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
