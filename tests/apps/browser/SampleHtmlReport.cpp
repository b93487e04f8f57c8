// Writes the page the browser test opens: a scale report with an SI table and two plots whose
// names are hostile (markup, quotes, invalid UTF-8) and whose series have gaps.
#include "brinecast/reports/HtmlReport.h"

#include <cmath>
#include <exception>
#include <fstream>
#include <iostream>
#include <limits>

using namespace korvane::Brinecast::cli;

namespace {

const double kGap = std::numeric_limits<double>::quiet_NaN();
const std::string kHostile = "<script>window.hostile = 1</script><img src=x onerror=\"window.hostile = 2\">";

HtmlSection inputs() {
    HtmlSection s;
    s.heading = "Inputs " + kHostile;
    s.facts = {{"Formation water", "Well 7 \"deep\" & 'shallow' \xFF\xFE"},
               {"Injection water", "Sea water"},
               {"Temperature (K)", "353.15"},
               {"Pressure (Pa)", "2.0e7"}};
    return s;
}

HtmlTable siTable() {
    HtmlTable t;
    t.caption = "Saturation index at each mixing fraction";
    t.header = {"Fraction of sea water", "Calcite", "Barite", kHostile};
    t.numeric = {true, true, true, true};
    t.rows = {{"0", "0.42", "-0.35", "0.10"},
              {"0.25", "0.31", "1.20", "0.60"},
              {"0.5", "0.18", "1.55", "nan"},
              {"0.75", "0.02", "1.31"}};
    return t;
}

HtmlPlot mixingPlot() {
    HtmlPlot p;
    p.title = "SI against mixing fraction " + kHostile;
    p.xLabel = "Fraction of sea water";
    p.yLabel = "SI";
    p.x = {0, 0.125, 0.25, 0.375, 0.5, 0.625, 0.75, 0.875, 1};
    p.series = {{"Calcite", {0.42, 0.37, 0.31, 0.25, 0.18, 0.11, 0.02, -0.08, -0.20}},
                {"Barite", {-0.35, 0.70, 1.20, 1.45, 1.55, 1.50, 1.31, 0.95, 0.40}},
                {"Celestite " + kHostile + " \xC3\x28",
                 {0.10, 0.35, 0.60, 0.72, kGap, kGap, 0.50, 0.30, 0.05}}};
    p.referenceY = 0.0;
    return p;
}

HtmlPlot profilePlot() {
    HtmlPlot p;
    p.title = "SI along the production profile";
    p.xLabel = "Depth (m)";
    p.yLabel = "SI";
    p.x = {3000, 2500, 2000, 1500, 1000, 500, 0};  // from the reservoir up, given top-down
    p.series = {{"Calcite", {-0.10, 0.05, 0.22, 0.41, 0.63, 0.88, 1.10}},
                {"Halite", {-0.90, -0.95, -1.02, -1.10, -1.21, -1.33, -1.47}}};
    p.referenceY = 0.0;
    return p;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: " << argv[0] << " <page.html>\n";
        return 2;
    }
    try {
        HtmlDocument d;
        d.title = "Scale report " + kHostile;
        HtmlSection si;
        si.heading = "Saturation indices";
        si.tables = {siTable()};
        si.plots = {mixingPlot(), profilePlot()};
        d.sections = {inputs(), si};
        std::ofstream out(argv[1], std::ios::binary);
        out << HtmlReport::render(d);
        if (!out) throw std::runtime_error(std::string("cannot write ") + argv[1]);
    } catch (const std::exception& e) {
        std::cerr << e.what() << '\n';
        return 1;
    }
    return 0;
}
