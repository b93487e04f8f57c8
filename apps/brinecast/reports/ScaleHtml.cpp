#include "brinecast/reports/ScaleHtml.h"

#include "brinecast/reports/NumberText.h"
#include "brinecast/reports/ResultText.h"
#include "brinecast/reports/ScaleReport.h"

#include <cmath>

namespace korvane::Brinecast::cli {
namespace {

constexpr double kZeroCelsiusK = 273.15;
constexpr double kPaPerBar = 1e5;

std::string fixed(double value, int decimals) { return std::isfinite(value) ? NumberText::fixed(value, decimals) : "-"; }
std::string significant(double value, int digits) { return std::isfinite(value) ? NumberText::significant(value, digits) : "-"; }

HtmlTable mineralTable(const ScaleAnalysis& a) {
    HtmlTable t{"Saturation and precipitation potential, most supersaturated first",
                {"Mineral", "SI", "log K", "log IAP", "Deposit (mol/kgw)", "Deposit (mg/L)"},
                {false, true, true, true, true, true},
                {}};
    for (const ScaleAnalysis::Mineral& m : a.minerals) {
        t.rows.push_back({m.saturation.name + (m.potential.converged ? "" : " (not converged)"),
                          fixed(m.saturation.saturationIndex, 3), fixed(m.saturation.logK, 3),
                          fixed(m.saturation.logIAP, 3), significant(m.potential.molPerKgw, 4),
                          significant(m.potential.mgPerL, 4)});
    }
    return t;
}

}  // namespace

HtmlDocument ScaleHtml::analysesDocument(const std::vector<ScaleAnalysis>& analyses) {
    HtmlDocument document{"Scale minerals", {}};
    for (const ScaleAnalysis& a : analyses) {
        HtmlSection section{a.name.empty() ? a.source : a.name, {}, {mineralTable(a)}, {}};
        section.facts = {{"Source", a.source},
                         {"Temperature", fixed(a.temperatureK - kZeroCelsiusK, 2) + " \xC2\xB0" "C"},
                         {"Pressure", significant(a.pressurePa / kPaPerBar, 6) + " bar"},
                         {"Density", significant(a.densityGcm3, 6) + " g/cm3 (" + a.densitySource + ")"},
                         {"pH", fixed(a.pH, 3)},
                         {"Activities", a.activity}};
        if (!a.mineralsNotAvailable.empty())
            section.facts.emplace_back("Not available under Pitzer", ResultText::joined(a.mineralsNotAvailable));
        document.sections.push_back(section);
    }
    return document;
}

HtmlDocument ScaleHtml::sweepDocument(const ScaleSweep& sweep) {
    const std::vector<std::string> minerals = sweep.mineralNames();
    HtmlTable table{"Saturation index of each mineral (positive: the mineral may deposit)",
                    {sweep.xLabel, "T (\xC2\xB0" "C)", "P (bar)", "pH"},
                    {true, true, true, true},
                    {}};
    HtmlPlot plot{"Saturation index against " + sweep.xLabel, sweep.xLabel, "Saturation index", {}, {}, 0.0};
    for (const std::string& m : minerals) {
        table.header.push_back(m);
        table.numeric.push_back(true);
        plot.series.push_back({m, {}});
    }
    for (const ScaleSweep::Point& p : sweep.points) {
        std::vector<std::string> row{significant(p.x, 4), fixed(p.temperatureK - kZeroCelsiusK, 2),
                                     significant(p.pressurePa / kPaPerBar, 6), fixed(p.pH, 3)};
        plot.x.push_back(p.x);
        for (std::size_t m = 0; m < minerals.size(); ++m) {
            const double si = ScaleReport::saturationIndex(p, minerals[m]);
            row.push_back(fixed(si, 3));
            plot.series[m].y.push_back(si);
        }
        table.rows.push_back(row);
    }
    HtmlSection section{"Waters and conditions", sweep.facts, {table}, {plot}};
    if (!sweep.mineralsNotAvailable.empty())
        section.facts.emplace_back("Not available under Pitzer", ResultText::joined(sweep.mineralsNotAvailable));
    return HtmlDocument{sweep.title, {section}};
}

}  // namespace korvane::Brinecast::cli
