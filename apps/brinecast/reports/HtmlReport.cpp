#include "brinecast/reports/HtmlReport.h"

#include "brinecast/reports/HtmlAssets.h"
#include "brinecast/reports/HtmlPlotJson.h"
#include "brinecast/reports/HtmlText.h"
#include "brinecast/reports/NumberText.h"

#include <algorithm>
#include <cmath>

namespace korvane::Brinecast::cli {
namespace {

/// Nothing may be fetched: scripts and styles are the page's own, inline.
const char kPolicy[] =
    "default-src 'none'; script-src 'unsafe-inline'; style-src 'unsafe-inline'; img-src data:";

std::string esc(const std::string& text) { return HtmlText::escaped(text); }

void head(std::string& out, const HtmlDocument& doc, const std::vector<std::string>& assets) {
    out += "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n";
    out += "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n";
    out += "<meta http-equiv=\"Content-Security-Policy\" content=\"";
    out += kPolicy;
    out += "\">\n<meta name=\"generator\" content=\"brinecast\">\n";
    out += "<link rel=\"icon\" href=\"data:,\">\n<title>" + esc(doc.title) + "</title>\n";
    out += "<style>\n" + assets[UplotStyle] + "\n</style>\n";
    out += "<style>\n" + assets[ReportStyle] + "\n</style>\n</head>\n";
}

void facts(std::string& out, const HtmlSection& section) {
    if (section.facts.empty()) return;
    out += "<dl class=\"facts\">\n";
    for (const auto& [label, value] : section.facts) {
        out += "<dt>" + esc(label) + "</dt><dd>" + esc(value) + "</dd>\n";
    }
    out += "</dl>\n";
}

/// A cell, right-aligned when its column is numeric.
void cell(std::string& out, const char* tag, const HtmlTable& table, std::size_t column,
          const std::string& text) {
    const bool numeric = column < table.numeric.size() && table.numeric[column];
    out += std::string("<") + tag + (numeric ? " class=\"num\">" : ">") + esc(text) + "</" + tag +
           ">";
}

/// Rows shorter than the widest row or the header are padded with empty cells.
void table(std::string& out, const HtmlTable& t) {
    std::size_t width = t.header.size();
    for (const auto& row : t.rows) width = std::max(width, row.size());
    out += "<table>\n";
    if (!t.caption.empty()) out += "<caption>" + esc(t.caption) + "</caption>\n";
    if (!t.header.empty()) {
        out += "<thead><tr>";
        for (std::size_t c = 0; c < width; ++c) {
            cell(out, "th", t, c, c < t.header.size() ? t.header[c] : std::string());
        }
        out += "</tr></thead>\n";
    }
    out += "<tbody>\n";
    for (const auto& row : t.rows) {
        out += "<tr>";
        for (std::size_t c = 0; c < width; ++c) {
            cell(out, "td", t, c, c < row.size() ? row[c] : std::string());
        }
        out += "</tr>\n";
    }
    out += "</tbody>\n</table>\n";
}

bool hasPoints(const HtmlPlot& plot) {
    return std::any_of(plot.x.begin(), plot.x.end(), [](double x) { return std::isfinite(x); });
}

/// The figure's caption names the dashed line, which the chart's legend does not list.
void plot(std::string& out, const HtmlPlot& p) {
    out += "<figure class=\"plot\">\n<figcaption>" + esc(p.title);
    if (std::isfinite(p.referenceY)) {
        out += " <span class=\"reference\">(dashed line: " + esc(p.yLabel) + " = " +
               NumberText::exact(p.referenceY) + ")</span>";
    }
    out += "</figcaption>\n";
    if (!hasPoints(p)) {
        out += "<p class=\"empty\">No points to plot.</p>\n</figure>\n";
        return;
    }
    out += "<div class=\"chart\" role=\"img\" aria-label=\"" + esc(p.title) + "\"></div>\n";
    out += "<script type=\"application/json\" class=\"plot-data\">";
    out += HtmlText::scriptSafeJson(HtmlPlotJson::write(p));
    out += "</script>\n</figure>\n";
}

void section(std::string& out, const HtmlSection& s) {
    out += "<section>\n";
    if (!s.heading.empty()) out += "<h2>" + esc(s.heading) + "</h2>\n";
    facts(out, s);
    for (const HtmlTable& t : s.tables) table(out, t);
    for (const HtmlPlot& p : s.plots) plot(out, p);
    out += "</section>\n";
}

/// uPlot's licence travels with its code, as its terms ask.
void scripts(std::string& out, const std::vector<std::string>& assets) {
    out += "<noscript><p>The plots need JavaScript; the tables hold the same numbers.</p>"
           "</noscript>\n";
    out += "<script>\n/*\n" + assets[UplotLicense] + "*/\n" + assets[UplotScript] + "\n</script>\n";
    out += "<script>\n" + assets[ReportScript] + "\n</script>\n";
}

}  // namespace

std::string HtmlReport::render(const HtmlDocument& document) {
    static const std::vector<std::string> assets = htmlAssets();
    std::string out;
    out.reserve(assets[UplotScript].size() + 16384);
    head(out, document, assets);
    out += "<body>\n<main>\n<h1>" + esc(document.title) + "</h1>\n";
    for (const HtmlSection& s : document.sections) section(out, s);
    out += "</main>\n";
    scripts(out, assets);
    out += "</body>\n</html>\n";
    return out;
}

}  // namespace korvane::Brinecast::cli
