#include "brinecast/reports/ScaleReport.h"

#include "brinecast/reports/CsvReport.h"
#include "brinecast/reports/NumberText.h"
#include "brinecast/reports/ResultText.h"
#include "brinecast/reports/TextTable.h"
#include "brinecast/readers/Utf8Text.h"

#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

#include <cmath>

namespace korvane::Brinecast::cli {
namespace {

using Writer = rapidjson::PrettyWriter<rapidjson::StringBuffer>;
constexpr double kZeroCelsiusK = 273.15;
constexpr double kPaPerBar = 1e5;

std::string csvNumber(double value) { return std::isfinite(value) ? NumberText::exact(value) : ""; }
std::string cell(double value, int digits) { return std::isfinite(value) ? NumberText::significant(value, digits) : "-"; }
std::string celsius(double kelvin) { return NumberText::fixed(kelvin - kZeroCelsiusK, 2) + " \xC2\xB0" "C"; }
std::string bar(double pascal) { return NumberText::significant(pascal / kPaPerBar, 6) + " bar"; }

void text(Writer& w, const char* name, const std::string& value) {
    w.Key(name);
    const std::string valid = Utf8Text::repaired(value);
    w.String(valid.c_str(), static_cast<rapidjson::SizeType>(valid.size()));
}

void number(Writer& w, const char* name, double value) {
    w.Key(name);
    if (std::isfinite(value)) w.Double(value);
    else w.Null();
}

void texts(Writer& w, const char* name, const std::vector<std::string>& values) {
    w.Key(name);
    w.StartArray();
    for (const std::string& value : values) w.String(value.c_str(), static_cast<rapidjson::SizeType>(value.size()));
    w.EndArray();
}

/// "  Not available under Pitzer: Siderite, Strontianite", or nothing when none are missing.
void notAvailableLine(std::ostream& out, const std::vector<std::string>& minerals) {
    if (!minerals.empty()) out << "  Not available under Pitzer: " << ResultText::joined(minerals) << '\n';
}

void saturation(Writer& w, const MineralSaturation& m) {
    text(w, "name", m.name);
    number(w, "saturationIndex", m.saturationIndex);
    number(w, "logK", m.logK);
    number(w, "logIAP", m.logIAP);
}

void analysesJson(std::ostream& out, const std::vector<ScaleAnalysis>& analyses) {
    rapidjson::StringBuffer buffer;
    Writer w(buffer);
    w.StartObject();
    w.Key("analyses");
    w.StartArray();
    for (const ScaleAnalysis& a : analyses) {
        w.StartObject();
        text(w, "name", a.name);
        text(w, "source", a.source);
        number(w, "temperatureK", a.temperatureK);
        number(w, "pressurePa", a.pressurePa);
        number(w, "densityGcm3", a.densityGcm3);
        text(w, "densitySource", a.densitySource);
        number(w, "pH", a.pH);
        text(w, "activity", a.activity);
        w.Key("converged");
        w.Bool(a.converged);
        texts(w, "notAvailableUnderPitzer", a.mineralsNotAvailable);
        w.Key("minerals");
        w.StartArray();
        for (const ScaleAnalysis::Mineral& m : a.minerals) {
            w.StartObject();
            saturation(w, m.saturation);
            number(w, "precipitationMolPerKgw", m.potential.molPerKgw);
            number(w, "precipitationMgPerL", m.potential.mgPerL);
            w.Key("precipitationConverged");
            w.Bool(m.potential.converged);
            w.EndObject();
        }
        w.EndArray();
        w.EndObject();
    }
    w.EndArray();
    w.EndObject();
    out << buffer.GetString() << '\n';
}

void analysesCsv(std::ostream& out, const std::vector<ScaleAnalysis>& analyses) {
    out << "source,name,temperature_K,pressure_Pa,density_g_cm3,pH,activity,mineral,saturation_index,log_k,log_iap,"
           "precipitation_mol_per_kgw,precipitation_mg_per_l,converged\n";
    for (const ScaleAnalysis& a : analyses) {
        const auto start = [&](std::ostream& row) -> std::ostream& {
            return row << CsvReport::field(a.source) << ',' << CsvReport::field(a.name) << ','
                       << csvNumber(a.temperatureK) << ',' << csvNumber(a.pressurePa) << ','
                       << csvNumber(a.densityGcm3) << ',' << csvNumber(a.pH) << ',' << CsvReport::field(a.activity)
                       << ',';
        };
        for (const ScaleAnalysis::Mineral& m : a.minerals) {
            start(out) << m.saturation.name << ',' << csvNumber(m.saturation.saturationIndex) << ','
                       << csvNumber(m.saturation.logK) << ',' << csvNumber(m.saturation.logIAP) << ','
                       << csvNumber(m.potential.molPerKgw) << ',' << csvNumber(m.potential.mgPerL) << ','
                       << (m.potential.converged && a.converged ? "yes" : "no") << '\n';
        }
        // A mineral the Pitzer data lack keeps its row, with no numbers.
        for (const std::string& m : a.mineralsNotAvailable) start(out) << m << ",,,,,,not available under Pitzer\n";
    }
}

void analysesTable(std::ostream& out, const std::vector<ScaleAnalysis>& analyses) {
    for (const ScaleAnalysis& a : analyses) {
        out << Utf8Text::oneLine(a.name.empty() ? a.source : a.name) << "\n  " << celsius(a.temperatureK) << ", "
            << bar(a.pressurePa) << ", density " << cell(a.densityGcm3, 6) << " g/cm3 (" << a.densitySource
            << "), pH " << NumberText::fixed(a.pH, 3) << "\n  Activities: " << a.activity << '\n';
        notAvailableLine(out, a.mineralsNotAvailable);
        out << '\n';
        if (a.minerals.empty()) {
            out << "  No scale mineral: the analysis lacks the components of every one.\n\n";
            continue;
        }
        TextTable table({"Mineral", "SI", "log K", "log IAP", "Deposit (mol/kgw)", "Deposit (mg/L)"},
                        {false, true, true, true, true, true});
        for (const ScaleAnalysis::Mineral& m : a.minerals) {
            const bool deposits = m.potential.molPerKgw > 0.0;
            table.add({m.saturation.name + (m.potential.converged ? "" : " (not converged)"),
                       NumberText::fixed(m.saturation.saturationIndex, 3), NumberText::fixed(m.saturation.logK, 3),
                       NumberText::fixed(m.saturation.logIAP, 3), deposits ? cell(m.potential.molPerKgw, 4) : "0",
                       deposits ? cell(m.potential.mgPerL, 4) : "0"});
        }
        table.write(out, "  ");
        out << '\n';
    }
}

void sweepJson(std::ostream& out, const ScaleSweep& sweep) {
    rapidjson::StringBuffer buffer;
    Writer w(buffer);
    w.StartObject();
    text(w, "title", sweep.title);
    w.Key("inputs");
    w.StartObject();
    for (const auto& fact : sweep.facts) text(w, fact.first.c_str(), fact.second);
    w.EndObject();
    texts(w, "notAvailableUnderPitzer", sweep.mineralsNotAvailable);
    w.Key("points");
    w.StartArray();
    for (const ScaleSweep::Point& p : sweep.points) {
        w.StartObject();
        number(w, sweep.xKey.c_str(), p.x);
        number(w, "temperatureK", p.temperatureK);
        number(w, "pressurePa", p.pressurePa);
        number(w, "pH", p.pH);
        w.Key("converged");
        w.Bool(p.converged);
        w.Key("minerals");
        w.StartArray();
        for (const MineralSaturation& m : p.minerals) {
            w.StartObject();
            saturation(w, m);
            w.EndObject();
        }
        w.EndArray();
        w.EndObject();
    }
    w.EndArray();
    w.EndObject();
    out << buffer.GetString() << '\n';
}

void sweepCsv(std::ostream& out, const ScaleSweep& sweep) {
    const std::vector<std::string> minerals = sweep.mineralNames();
    out << sweep.xKey << ",temperature_K,pressure_Pa,pH,converged,activity";
    for (const std::string& m : minerals) out << ",SI " << m;
    // The minerals the Pitzer data lack keep a column, named so and empty.
    for (const std::string& m : sweep.mineralsNotAvailable) out << ",SI " << m << " (not available under Pitzer)";
    out << '\n';
    for (const ScaleSweep::Point& p : sweep.points) {
        out << csvNumber(p.x) << ',' << csvNumber(p.temperatureK) << ',' << csvNumber(p.pressurePa) << ','
            << csvNumber(p.pH) << ',' << (p.converged ? "yes" : "no") << ',' << CsvReport::field(sweep.activity);
        for (const std::string& m : minerals) out << ',' << csvNumber(ScaleReport::saturationIndex(p, m));
        out << std::string(sweep.mineralsNotAvailable.size(), ',') << '\n';
    }
}

void sweepTable(std::ostream& out, const ScaleSweep& sweep) {
    out << Utf8Text::oneLine(sweep.title) << '\n';
    for (const auto& fact : sweep.facts) out << "  " << fact.first << ": " << Utf8Text::oneLine(fact.second) << '\n';
    notAvailableLine(out, sweep.mineralsNotAvailable);
    out << "\n  Saturation index of each mineral (positive: the mineral may deposit)\n\n";
    const std::vector<std::string> minerals = sweep.mineralNames();
    std::vector<std::string> header{sweep.xLabel, "T (\xC2\xB0" "C)", "P (bar)", "pH"};
    header.insert(header.end(), minerals.begin(), minerals.end());
    TextTable table(header, std::vector<bool>(header.size(), true));
    for (const ScaleSweep::Point& p : sweep.points) {
        std::vector<std::string> row{NumberText::significant(p.x, 4), NumberText::fixed(p.temperatureK - kZeroCelsiusK, 2),
                                     NumberText::significant(p.pressurePa / kPaPerBar, 6),
                                     NumberText::fixed(p.pH, 3) + (p.converged ? "" : " (not converged)")};
        for (const std::string& m : minerals) {
            const double si = ScaleReport::saturationIndex(p, m);
            row.push_back(std::isfinite(si) ? NumberText::fixed(si, 3) : "-");
        }
        table.add(row);
    }
    table.write(out, "  ");
}

}  // namespace

double ScaleReport::saturationIndex(const ScaleSweep::Point& point, const std::string& mineral) {
    for (const MineralSaturation& m : point.minerals) {
        if (m.name == mineral) return m.saturationIndex;
    }
    return NAN;
}

void ScaleReport::writeAnalyses(std::ostream& out, const std::vector<ScaleAnalysis>& analyses,
                                const std::string& format) {
    if (format == "json") analysesJson(out, analyses);
    else if (format == "csv") analysesCsv(out, analyses);
    else analysesTable(out, analyses);
}

void ScaleReport::writeSweep(std::ostream& out, const ScaleSweep& sweep, const std::string& format) {
    if (format == "json") sweepJson(out, sweep);
    else if (format == "csv") sweepCsv(out, sweep);
    else sweepTable(out, sweep);
}

}  // namespace korvane::Brinecast::cli
