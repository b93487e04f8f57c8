#include "brinecast/reports/TableReport.h"

#include "brinecast/reports/LabText.h"
#include "brinecast/reports/NumberText.h"
#include "brinecast/reports/ResultText.h"
#include "brinecast/reports/TextTable.h"
#include "brinecast/readers/UnitNames.h"
#include "brinecast/readers/Utf8Text.h"

#include <cmath>

namespace korvane::Brinecast::cli {
namespace {

using Status = AnalysisResult::Status;
using DensitySource = AnalysisResult::DensitySource;

constexpr std::size_t kLabelWidth = 16;
constexpr std::size_t kLineWidth = 100;

/// "  Label           text", the text wrapped at word boundaries under itself.
void field(std::ostream& out, const std::string& label, const std::string& text) {
    const std::string indent(2 + kLabelWidth, ' ');
    out << "  " << label << std::string(label.size() < kLabelWidth ? kLabelWidth - label.size() : 1, ' ');
    std::size_t column = indent.size();
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find(' ', start);
        if (end == std::string::npos) end = text.size();
        const std::size_t length = end - start;
        if (column > indent.size() && column + 1 + length > kLineWidth) {
            out << '\n' << indent;
            column = indent.size();
        } else if (column > indent.size()) {
            out << ' ';
            ++column;
        }
        out << text.substr(start, length);
        column += length;
        start = end + 1;
    }
    out << '\n';
}


std::string signedNumber(double value, int digits) {
    return (value > 0 ? "+" : "") + NumberText::significant(value, digits);
}

std::string density(const AnalysisResult& r) {
    const std::string value = NumberText::significant(r.densityGcm3, 6) + " g/cm3";
    switch (r.densitySource) {
        case DensitySource::Given: return value + ", given in the analysis";
        case DensitySource::Engine: return value + ", computed by the engine library";
        case DensitySource::NotNeeded: break;
    }
    return "not needed for amounts in " + UnitNames::concentrationName(r.analysis.unit) +
           " (the library takes 1.0 g/cm3)";
}

std::string charge(const ChargeBalance& c) {
    return "net " + signedNumber(c.net(), 4) + " " + c.unitName() + ", " +
           NumberText::fixed(c.errorPercent(), 2) + " % of the total charge of " +
           NumberText::significant(c.total(), 4) + " " + c.unitName();
}

std::string check(const SpeciationCheck::Result& c) {
    if (!c.mismatch.empty()) return "the result does not match the basis reaction set: " + c.mismatch;
    if (!c.closed()) {
        std::string open;
        for (const SpeciationCheck::Component& comp : c.components) {
            if (!comp.closed) open += (open.empty() ? "" : ", ") + comp.basis;
        }
        if (!c.chargeClosed) open += std::string(open.empty() ? "" : ", ") + "charge";
        return "NOT CLOSED (" + open + "): these numbers are not a solution";
    }
    if (c.chargeLeftOpen) {
        return "mass balances close (largest relative error " + NumberText::significant(c.worstRelativeError(), 2) +
               "); the charge balance is left open at the measured pH, off by " +
               NumberText::significant(100.0 * std::fabs(c.chargeSum) / c.chargeScale, 3) + " % of the ionic charge";
    }
    return "mass balances and charge balance close (largest relative error " +
           NumberText::significant(c.worstRelativeError(), 2) + ")";
}

/// "robust after specified, 4 iterations; balances close to 3.1e-16 (mass) and 2.2e-16 (charge)".
std::string solver(const Diagnostics& d) {
    return ResultText::solver(d) + ", " + std::to_string(d.iterations) + (d.iterations == 1 ? " iteration, " : " iterations, ") +
           (d.converged ? "converged" : "NOT converged") + "; largest mass-balance error " +
           NumberText::significant(d.massBalanceError, 2) + ", charge imbalance " +
           NumberText::significant(d.chargeImbalance, 2);
}

/// "pitzer (auto); ionic strength 0.6752 mol/kgw; water activity 0.98054".
std::string activities(const AnalysisResult::Activities& a) {
    return ResultText::activityChoice(a.model, a.automatic, a.pitzerGaps) + "; ionic strength " +
           NumberText::significant(a.ionicStrengthMolPerKgw, 6) + " mol/kgw; water activity " +
           NumberText::significant(std::pow(10.0, a.logWaterActivity), 6);
}

std::string logNumber(double value) { return std::isfinite(value) ? NumberText::fixed(value, 4) : ""; }

void species(std::ostream& out, const AnalysisResult& r, const ComponentNames& names) {
    TextTable table({"Component", "Total (mol/kgw)", "Species", "Molality (mol/kgw)", "Share (%)",
                     "log10 gamma", "log10 activity"},
                    {false, true, false, true, true, true, true});
    for (const SpeciationCheck::Component& c : r.check.components) {
        bool first = true;
        for (const SpeciationCheck::Species& s : c.species) {
            const double logGamma = r.activities ? r.activities->logGamma(s.name) : NAN;
            table.add({first ? names.elementOfBasis(c.basis) + " (" + c.basis + ")" : "",
                       first ? NumberText::significant(c.total, 6) : "", s.name,
                       NumberText::significant(s.molality, 6),
                       NumberText::significant(100.0 * s.share, 4), logNumber(logGamma),
                       s.molality > 0.0 ? logNumber(logGamma + std::log10(s.molality)) : ""});
            first = false;
        }
    }
    out << '\n';
    table.write(out, "  ");
}

void writeOne(std::ostream& out, const AnalysisResult& r, const ComponentNames& names) {
    const Analysis& a = r.analysis;
    out << Utf8Text::oneLine(a.name.empty() ? a.source : a.name) << '\n';
    field(out, "Source", a.source);
    if (!a.description.empty()) field(out, "Description", a.description);
    if (r.status == Status::Invalid) {
        field(out, "Status", "invalid input: " + r.error);
        return;
    }
    field(out, "Temperature", NumberText::exact(a.temperatureK) + " K (" +
                                  NumberText::significant(a.temperatureK - 273.15, 8) + " \xC2\xB0" "C)");
    field(out, "Pressure", NumberText::exact(a.pressurePa) + " Pa (" +
                               NumberText::significant(a.pressurePa / 1e5, 8) + " bar)");
    if (std::isfinite(r.densityGcm3)) field(out, "Density", density(r));
    field(out, "Unit", UnitNames::concentrationName(a.unit));
    for (const std::string& note : a.notes) field(out, "Note", note);
    if (r.balancing) {
        field(out, "Balanced with", r.balancing->element + ": added " +
                                        NumberText::significant(r.balancing->amount, 6) + " " +
                                        UnitNames::concentrationName(a.unit) + " to cancel " +
                                        charge(r.balancing->before));
    }
    field(out, "Charge balance", charge(r.charge));
    if (std::isfinite(r.solids.mgPerKg)) field(out, "TDS", LabText::solids(r.solids));
    for (const std::string& w : r.warnings) field(out, "Warning", w);
    if (!r.calculated()) {
        field(out, "Status", "failed: " + r.error);
        if (!r.hint.empty()) field(out, "What to try", r.hint);
        return;
    }
    field(out, "pH", NumberText::fixed(r.pH, 3) + (r.constraints.pHFixed ? ", measured" : ""));
    field(out, "Alkalinity", LabText::alkalinity(r));
    if (!r.constraints.balancedWith.empty()) field(out, "Taken up by", LabText::balancedWith(r.constraints));
    if (r.activities) field(out, "Activities", activities(*r.activities));
    if (r.solver) field(out, "Solver", solver(*r.solver));
    field(out, "Check", check(r.check));
    if (r.status == Status::NotClosed) field(out, "What to try", r.hint);
    species(out, r, names);
}

}  // namespace

void TableReport::writeSpeciation(std::ostream& out, const std::vector<AnalysisResult>& results,
                                  const ComponentNames& names) {
    for (std::size_t i = 0; i < results.size(); ++i) {
        if (i > 0) out << '\n';
        writeOne(out, results[i], names);
    }
}

void TableReport::writePH(std::ostream& out, const std::vector<AnalysisResult>& results) {
    TextTable table({"Analysis", "pH", "Status", "Activities"}, {false, true, false, false});
    for (const AnalysisResult& r : results) {
        const std::string name = Utf8Text::oneLine(r.analysis.name.empty() ? r.analysis.source : r.analysis.name);
        const AnalysisResult::Activities* a = r.calculated() && r.activities ? &*r.activities : nullptr;
        // Messages go to standard error, one per analysis; the table stays one line each.
        table.add({name, r.calculated() ? NumberText::fixed(r.pH, 3) : "", ResultText::status(r.status),
                   a ? ResultText::activityChoice(a->model, a->automatic, a->pitzerGaps) : ""});
    }
    table.write(out, "");
}

}  // namespace korvane::Brinecast::cli
