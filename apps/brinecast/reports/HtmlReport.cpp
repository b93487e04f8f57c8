// PLACEHOLDER, to be replaced by the real HTML page writer when the branches meet: this one
// writes the title, the facts and the tables as plain HTML and lists each plot's series as a
// table, so that `--format html` gives a readable page until then.
#include "brinecast/reports/HtmlReport.h"

#include "brinecast/reports/NumberText.h"

#include <cmath>
#include <sstream>

namespace korvane::Brinecast::cli {
namespace {

std::string escaped(const std::string& text) {
    std::string out;
    for (char c : text) {
        if (c == '<') out += "&lt;";
        else if (c == '>') out += "&gt;";
        else if (c == '&') out += "&amp;";
        else if (c == '"') out += "&quot;";
        else out += c;
    }
    return out;
}

void table(std::ostream& out, const HtmlTable& t) {
    out << "<table><caption>" << escaped(t.caption) << "</caption><tr>";
    for (const std::string& h : t.header) out << "<th>" << escaped(h) << "</th>";
    out << "</tr>\n";
    for (const auto& row : t.rows) {
        out << "<tr>";
        for (const std::string& c : row) out << "<td>" << escaped(c) << "</td>";
        out << "</tr>\n";
    }
    out << "</table>\n";
}

HtmlTable plotAsTable(const HtmlPlot& plot) {
    HtmlTable t{plot.title, {plot.xLabel}, {true}, {}};
    for (const HtmlSeries& s : plot.series) t.header.push_back(s.name);
    for (std::size_t i = 0; i < plot.x.size(); ++i) {
        std::vector<std::string> row{NumberText::significant(plot.x[i], 6)};
        for (const HtmlSeries& s : plot.series)
            row.push_back(i < s.y.size() && std::isfinite(s.y[i]) ? NumberText::significant(s.y[i], 6) : "");
        t.rows.push_back(row);
    }
    return t;
}

}  // namespace

std::string HtmlReport::render(const HtmlDocument& document) {
    std::ostringstream out;
    out << "<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>" << escaped(document.title)
        << "</title></head><body>\n<h1>" << escaped(document.title) << "</h1>\n";
    for (const HtmlSection& section : document.sections) {
        out << "<h2>" << escaped(section.heading) << "</h2>\n<dl>";
        for (const auto& fact : section.facts) out << "<dt>" << escaped(fact.first) << "</dt><dd>" << escaped(fact.second) << "</dd>";
        out << "</dl>\n";
        for (const HtmlTable& t : section.tables) table(out, t);
        for (const HtmlPlot& p : section.plots) table(out, plotAsTable(p));
    }
    out << "</body></html>\n";
    return out.str();
}

}  // namespace korvane::Brinecast::cli
