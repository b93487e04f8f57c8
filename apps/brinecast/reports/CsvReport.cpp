#include "brinecast/reports/CsvReport.h"

#include "brinecast/reports/LabText.h"
#include "brinecast/reports/NumberText.h"
#include "brinecast/reports/ResultText.h"
#include "brinecast/readers/Utf8Text.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace korvane::Brinecast::cli {
namespace {

std::string number(double value) { return std::isfinite(value) ? NumberText::exact(value) : ""; }

/// pH source, alkalinity, dissolved solids, and what a measured pH imposed.
void writeLabColumns(std::ostream& out, const AnalysisResult& r) {
    const bool calculated = r.calculated();
    const ConstraintOutcome& c = r.constraints;
    const bool balanced = calculated && !c.balancedWith.empty();
    out << ',' << (calculated ? LabText::pHSource(r) : "") << ','
        << (calculated ? number(r.alkalinityEqPerKgw) : "") << ',' << number(r.solids.mgPerL) << ','
        << number(r.solids.mgPerKg) << ',' << (balanced ? CsvReport::field(c.balancedWith) : "") << ','
        << (balanced ? number(c.balanceAdjustment) : "") << ','
        << (calculated && c.alkalinityImposed ? number(c.derivedCarbon) : "");
}

}  // namespace

std::vector<std::string> CsvReport::speciesColumns(const std::vector<AnalysisResult>& results) {
    std::vector<std::string> names;
    for (const AnalysisResult& r : results) {
        for (const SpeciationCheck::Component& c : r.check.components) {
            for (const SpeciationCheck::Species& s : c.species) {
                if (std::find(names.begin(), names.end(), s.name) == names.end()) {
                    names.push_back(s.name);
                }
            }
        }
    }
    return names;
}

std::string CsvReport::field(const std::string& raw) {
    // A cell is one line of valid UTF-8, whatever a name or an engine message held.
    const std::string text = Utf8Text::oneLine(raw);
    if (text.find_first_of(",\"") == std::string::npos) return text;
    std::string quoted = "\"";
    for (char c : text) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + "\"";
}

void CsvReport::write(std::ostream& out, const std::vector<AnalysisResult>& results,
                      bool withSpecies) {
    const std::vector<std::string> species = withSpecies ? speciesColumns(results)
                                                         : std::vector<std::string>{};
    writeHeader(out, species, withSpecies);
    for (const AnalysisResult& r : results) writeRow(out, r, species, withSpecies);
}

void CsvReport::writeHeader(std::ostream& out, const std::vector<std::string>& species,
                            bool withSpecies) {
    out << "source,name,pH,status,message";
    // The pH depends on the model, which --activity auto chooses per analysis.
    if (!withSpecies) out << ",activity_model,activity_note";
    if (withSpecies) {
        out << ",warnings,temperature_K,pressure_Pa,density_g_cm3,density_source,"
               "charge_balance_error_percent,balanced_with,balancing_amount,"
               "worst_relative_error,solver,solver_iterations,mass_balance_error,charge_imbalance,"
               "activity_model,activity_note,ionic_strength_mol_per_kgw,water_activity,"
               "pH_source,alkalinity_eq_per_kgw,tds_mg_per_L,tds_mg_per_kg,"
               "imposed_balance_with,imposed_balance_adjustment_mol_per_kgw,derived_carbon_mol_per_kgw";
        for (const std::string& s : species) out << ',' << field(s + " (mol/kgw)");
        for (const std::string& s : species) out << ',' << field(s + " log10 gamma");
        for (const std::string& s : species) out << ',' << field(s + " log10 activity");
    }
    out << '\n';
}

void CsvReport::writeRow(std::ostream& out, const AnalysisResult& r,
                         const std::vector<std::string>& species, bool withSpecies) {
    const bool calculated = r.calculated();
    out << field(r.analysis.source) << ',' << field(r.analysis.name) << ','
        << (calculated ? number(r.pH) : "") << ',' << field(ResultText::status(r.status))
        << ',' << field(ResultText::message(r));
    if (!withSpecies) {
        const AnalysisResult::Activities* activity = calculated && r.activities ? &*r.activities : nullptr;
        out << ',' << (activity ? ResultText::activityModel(activity->model) : "") << ','
            << (activity ? field(ResultText::activityNote(activity->automatic, activity->pitzerGaps)) : "");
    }
    if (withSpecies) {
        std::string warnings;
        for (const std::string& w : r.warnings) warnings += (warnings.empty() ? "" : " ") + w;
        const bool read = r.status != AnalysisResult::Status::Invalid;
        out << ',' << field(warnings) << ',' << (read ? number(r.analysis.temperatureK) : "")
            << ',' << (read ? number(r.analysis.pressurePa) : "") << ','
            << (read ? number(r.densityGcm3) : "") << ','
            << (read ? ResultText::densitySource(r.densitySource) : "") << ','
            << (read ? number(r.charge.errorPercent()) : "") << ','
            << (r.balancing ? field(r.balancing->element) : "") << ','
            << (r.balancing ? number(r.balancing->amount) : "") << ','
            << (calculated ? number(r.check.worstRelativeError()) : "");
        const bool solved = calculated && r.solver.has_value();
        out << ',' << (solved ? field(ResultText::solver(*r.solver)) : "") << ','
            << (solved ? std::to_string(r.solver->iterations) : "") << ','
            << (solved ? number(r.solver->massBalanceError) : "") << ','
            << (solved ? number(r.solver->chargeImbalance) : "");
        const AnalysisResult::Activities* activity = calculated && r.activities ? &*r.activities : nullptr;
        out << ',' << (activity ? ResultText::activityModel(activity->model) : "") << ','
            << (activity ? field(ResultText::activityNote(activity->automatic, activity->pitzerGaps)) : "") << ','
            << (activity ? number(activity->ionicStrengthMolPerKgw) : "") << ','
            << (activity ? number(std::pow(10.0, activity->logWaterActivity)) : "");
        writeLabColumns(out, r);
        std::map<std::string, double> molality;
        for (const SpeciationCheck::Component& c : r.check.components) {
            for (const SpeciationCheck::Species& s : c.species) molality[s.name] = s.molality;
        }
        for (const std::string& s : species) {
            const auto it = molality.find(s);
            out << ',' << (calculated && it != molality.end() ? number(it->second) : "");
        }
        for (const std::string& s : species) out << ',' << (activity ? number(activity->logGamma(s)) : "");
        for (const std::string& s : species) {
            const auto it = molality.find(s);
            const bool known = activity && it != molality.end() && it->second > 0.0;
            out << ',' << (known ? number(activity->logGamma(s) + std::log10(it->second)) : "");
        }
    }
    out << '\n';
}

}  // namespace korvane::Brinecast::cli
