#include "brinecast/readers/AnalysisCsvReader.h"

#include "brinecast/readers/AnalysisBuilder.h"
#include "brinecast/readers/CsvTable.h"
#include "brinecast/readers/InputError.h"
#include "brinecast/readers/UnitNames.h"

#include <array>
#include <cstdlib>
#include <map>

namespace korvane::Brinecast::cli {
namespace {

enum class Column { Name, Description, Temperature, TemperatureUnit, Pressure, PressureUnit,
                    Density, Unit, PH, Alkalinity, AlkalinityUnit, BalanceWith, Element, Gas };

constexpr std::array<std::pair<const char*, Column>, 12> kFixedColumns{{
    {"name", Column::Name},
    {"description", Column::Description},
    {"temperature", Column::Temperature},
    {"temperature_unit", Column::TemperatureUnit},
    {"pressure", Column::Pressure},
    {"pressure_unit", Column::PressureUnit},
    {"density", Column::Density},
    {"unit", Column::Unit},
    {"pH", Column::PH},
    {"alkalinity", Column::Alkalinity},
    {"alkalinity_unit", Column::AlkalinityUnit},
    {"balance_with", Column::BalanceWith},
}};

std::string fixedColumnList() {
    std::string text;
    for (const auto& c : kFixedColumns) text += std::string(c.first) + ", ";
    return text;
}

std::string columnName(const std::string& name) { return "column \"" + name + "\""; }

/// The whole cell must be a decimal number: no trailing text, no hexadecimal, no "nan".
double number(const AnalysisBuilder& b, const std::string& text, const std::string& where) {
    const bool decimal = !text.empty() &&
                         text.find_first_not_of("0123456789+-.eE") == std::string::npos;
    char* end = nullptr;
    const double value = decimal ? std::strtod(text.c_str(), &end) : 0.0;
    if (!decimal || end != text.c_str() + text.size()) {
        b.fail(where, "\"" + text + "\" is not a number; write it with a decimal point, as 1250.5");
    }
    b.requireFinite(value, text, where);
    return value;
}

struct Layout {
    std::vector<Column> columns;
    std::map<Column, std::size_t> fixed;
};

Layout readHeader(const std::vector<std::string>& header, const ComponentNames& names,
                  const std::string& fileName) {
    Layout layout;
    std::map<std::string, std::string> elementColumns;  // element (or "C carbonate") -> column
    for (std::size_t i = 0; i < header.size(); ++i) {
        const std::string& name = header[i];
        const std::string at = fileName + ":1: " + columnName(name);
        Column column = Column::Element;
        bool isFixed = false;
        for (const auto& c : kFixedColumns) {
            if (name == c.first) { column = c.second; isFixed = true; }
        }
        if (isFixed) {
            if (!layout.fixed.emplace(column, i).second) {
                throw InputError(at + " appears twice; name each column once");
            }
        } else if (names.isGas(name)) {
            column = Column::Gas;
        } else if (auto e = names.element(name)) {
            const std::string key = e->name + (e->carbonate ? " carbonate" : "");
            if (!elementColumns.emplace(key, name).second) {
                throw InputError(at + " gives " + e->name + " a second time (first in column \"" +
                                 elementColumns[key] + "\"); give each element once");
            }
        } else {
            throw InputError(at + " is not a known column, element or ion; use " +
                             fixedColumnList() + "a gas (" + names.acceptedGases() +
                             ") or an element: " + names.acceptedElements());
        }
        layout.columns.push_back(column);
    }
    for (const char* required : {"temperature", "temperature_unit", "pressure", "pressure_unit",
                                 "unit"}) {
        bool present = false;
        for (const std::string& name : header) present = present || name == required;
        if (!present) {
            throw InputError(fileName + ":1: there is no column \"" + required +
                             "\"; a batch file needs temperature, temperature_unit, pressure, "
                             "pressure_unit and unit");
        }
    }
    return layout;
}

/// The optional measured pH, alkalinity and balancing ion; an empty cell gives none.
void readConstraints(AnalysisBuilder& b, const std::vector<std::string>& header, const Layout& layout,
                     const CsvTable::Row& row) {
    auto given = [&](Column c) { return layout.fixed.count(c) && !row.fields[layout.fixed.at(c)].empty(); };
    auto cell = [&](Column c) { return given(c) ? row.fields[layout.fixed.at(c)] : std::string(); };
    auto where = [&](Column c) { return columnName(header[layout.fixed.at(c)]); };
    if (given(Column::PH)) b.measuredPH(number(b, cell(Column::PH), where(Column::PH)), where(Column::PH));
    if (given(Column::Alkalinity)) {
        if (!layout.fixed.count(Column::AlkalinityUnit)) {
            b.fail(where(Column::Alkalinity), "has no unit; add a column \"alkalinity_unit\" holding " +
                                                  UnitNames::alkalinityAccepted());
        }
        b.alkalinity(number(b, cell(Column::Alkalinity), where(Column::Alkalinity)), cell(Column::AlkalinityUnit),
                     where(Column::Alkalinity), where(Column::AlkalinityUnit));
    }
    if (given(Column::BalanceWith)) b.balanceWith(cell(Column::BalanceWith), where(Column::BalanceWith));
}

Analysis readRow(const ComponentNames& names, const std::vector<std::string>& header,
                 const Layout& layout, const CsvTable::Row& row, const std::string& fileName) {
    const std::string source = fileName + ":" + std::to_string(row.line);
    AnalysisBuilder b(names, source, "row " + std::to_string(row.line));
    if (row.fields.size() != header.size()) {
        b.fail("row", "has " + std::to_string(row.fields.size()) + " fields where the header has " +
                          std::to_string(header.size()) + "; every row needs one cell per column "
                                                           "(leave a cell empty for none)");
    }
    auto cell = [&](Column c) { return row.fields[layout.fixed.at(c)]; };
    auto where = [&](Column c) { return columnName(header[layout.fixed.at(c)]); };
    auto conditions = [&](Column value, Column unit,
                          void (AnalysisBuilder::*set)(double, const std::string&,
                                                       const std::string&, const std::string&)) {
        if (cell(value).empty()) return;  // reported by build() as missing
        const double v = number(b, cell(value), where(value));
        (b.*set)(v, cell(unit), where(value), where(unit));
    };
    if (layout.fixed.count(Column::Name) && !cell(Column::Name).empty()) b.name(cell(Column::Name));
    if (layout.fixed.count(Column::Description)) b.description(cell(Column::Description));
    conditions(Column::Temperature, Column::TemperatureUnit, &AnalysisBuilder::temperature);
    conditions(Column::Pressure, Column::PressureUnit, &AnalysisBuilder::pressure);
    if (layout.fixed.count(Column::Density) && !cell(Column::Density).empty()) {
        b.density(number(b, cell(Column::Density), where(Column::Density)), where(Column::Density));
    }
    if (!cell(Column::Unit).empty()) b.unit(cell(Column::Unit), where(Column::Unit));
    readConstraints(b, header, layout, row);
    for (std::size_t i = 0; i < header.size(); ++i) {
        const Column c = layout.columns[i];
        if ((c != Column::Element && c != Column::Gas) || row.fields[i].empty()) continue;
        const double v = number(b, row.fields[i], columnName(header[i]));
        if (c == Column::Gas) {
            b.gas(header[i], v, columnName(header[i]));
        } else {
            b.element(header[i], v, columnName(header[i]));
        }
    }
    return b.build();
}

}  // namespace

std::vector<AnalysisCsvReader::Row> AnalysisCsvReader::read(const std::string& text,
                                                            const std::string& fileName) const {
    const CsvTable table = CsvTable::parse(text, fileName);
    const Layout layout = readHeader(table.header(), names_, fileName);
    if (table.rows().empty()) {
        throw InputError(fileName + ": the file has a header but no rows; put one analysis "
                                    "on each line below the header");
    }
    std::vector<Row> rows;
    rows.reserve(table.rows().size());
    for (const CsvTable::Row& r : table.rows()) {
        Row row;
        row.line = r.line;
        const auto name = layout.fixed.find(Column::Name);
        if (name != layout.fixed.end() && name->second < r.fields.size()) row.name = r.fields[name->second];
        try {
            row.analysis = readRow(names_, table.header(), layout, r, fileName);
        } catch (const InputError& e) {
            row.error = e.what();
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

}  // namespace korvane::Brinecast::cli
