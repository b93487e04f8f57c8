#include "FrameReport.h"

#include "brinecast/reports/ResultText.h"

#include <cmath>
#include <functional>

namespace korvane::Brinecast::python {
namespace {

using cli::AnalysisResult;

struct Field {
    const char* name;
    std::function<double(const AnalysisResult&)> number;       // when a number
    std::function<std::string(const AnalysisResult&)> text;    // when text
};

bool read(const AnalysisResult& r) { return r.status != AnalysisResult::Status::Invalid; }
bool solved(const AnalysisResult& r) { return r.calculated() && r.solver.has_value(); }

/// The CSV report's columns before the species, in its order and with its rules for which
/// rows have a value.
const std::vector<Field>& fields() {
    static const std::vector<Field> table{
        {"pH", [](const AnalysisResult& r) { return r.calculated() ? r.pH : NAN; }, {}},
        {"status", {}, [](const AnalysisResult& r) { return cli::ResultText::status(r.status); }},
        {"message", {}, [](const AnalysisResult& r) { return cli::ResultText::message(r); }},
        {"temperature_K", [](const AnalysisResult& r) { return read(r) ? r.analysis.temperatureK : NAN; }, {}},
        {"pressure_Pa", [](const AnalysisResult& r) { return read(r) ? r.analysis.pressurePa : NAN; }, {}},
        // NaN where the library computed it with the engine: it does not report that density.
        {"density_g_cm3", [](const AnalysisResult& r) { return read(r) ? r.densityGcm3 : NAN; }, {}},
        {"density_source", {}, [](const AnalysisResult& r) {
             return read(r) ? cli::ResultText::densitySource(r.densitySource) : std::string();
         }},
        {"balanced_with", {}, [](const AnalysisResult& r) { return r.balancing ? r.balancing->element : std::string(); }},
        {"balancing_amount", [](const AnalysisResult& r) { return r.balancing ? r.balancing->amount : NAN; }, {}},
        {"solver", {}, [](const AnalysisResult& r) {
             return solved(r) ? cli::ResultText::solver(*r.solver) : std::string();
         }},
        {"solver_iterations",
         [](const AnalysisResult& r) { return solved(r) ? static_cast<double>(r.solver->iterations) : NAN; }, {}},
        {"residual_norm", [](const AnalysisResult& r) { return solved(r) ? r.solver->residualNorm : NAN; }, {}},
        {"mass_balance_error", [](const AnalysisResult& r) { return solved(r) ? r.solver->massBalanceError : NAN; }, {}},
        {"charge_imbalance", [](const AnalysisResult& r) { return solved(r) ? r.solver->chargeImbalance : NAN; }, {}},
        {"activity_model", {}, [](const AnalysisResult& r) {
             return solved(r) && r.activities ? cli::ResultText::activityModel(r.activities->model) : std::string();
         }},
        {"activity_note", {}, [](const AnalysisResult& r) {
             return solved(r) && r.activities
                        ? cli::ResultText::activityNote(r.activities->automatic, r.activities->pitzerGaps)
                        : std::string();
         }},
        {"ionic_strength_mol_per_kgw", [](const AnalysisResult& r) {
             return solved(r) && r.activities ? r.activities->ionicStrengthMolPerKgw : NAN;
         }, {}},
        {"water_activity", [](const AnalysisResult& r) {
             return solved(r) && r.activities ? std::pow(10.0, r.activities->logWaterActivity) : NAN;
         }, {}},
        // NaN where the density is the engine's, computed inside the library.
        {"tds_mg_per_l", [](const AnalysisResult& r) { return read(r) ? r.solids.mgPerL : NAN; }, {}},
        {"tds_mg_per_kg", [](const AnalysisResult& r) { return read(r) ? r.solids.mgPerKg : NAN; }, {}},
    };
    return table;
}

bool sameNames(const std::vector<NameValue>& a, const std::vector<NameValue>& b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (a[i].name != b[i].name) return false;
    }
    return true;
}

}  // namespace

FrameReport::FrameReport(std::size_t rows) : rows_(rows) {
    for (const Field& f : fields()) {
        Column c{f.name, static_cast<bool>(f.text), {}, {}};
        if (c.text) {
            c.texts.resize(rows);
        } else {
            c.numbers.resize(rows, NAN);
        }
        columns_.push_back(std::move(c));
    }
}

void FrameReport::add(std::size_t first, const std::vector<FrameRow>& part) {
    const std::vector<Field>& table = fields();
    for (std::size_t k = 0; k < table.size(); ++k) {
        Column& c = columns_[k];
        for (std::size_t i = 0; i < part.size(); ++i) {
            if (c.text) {
                c.texts[first + i] = table[k].text(part[i].result);
            } else {
                c.numbers[first + i] = table[k].number(part[i].result);
            }
        }
    }
    addNamed(first, part, &FrameRow::measured, [](const std::string& name) { return name; });
    addNamed(first, part, &FrameRow::species, [](const std::string& s) { return s + " (mol/kgw)"; });
    addNamed(first, part, &FrameRow::saturation, [](const std::string& m) { return "SI " + m; });
}

void FrameReport::addNamed(std::size_t first, const std::vector<FrameRow>& part,
                           std::vector<NameValue> FrameRow::*values, std::string (*label)(const std::string&)) {
    // Neighbouring rows of a table usually hold the same species: their column positions are
    // looked up once per run of such rows, not once per cell.
    const std::vector<NameValue>* previous = nullptr;
    std::vector<std::size_t> slots;
    for (std::size_t i = 0; i < part.size(); ++i) {
        const std::vector<NameValue>& named = part[i].*values;
        if (named.empty()) continue;
        if (!previous || !sameNames(named, *previous)) {
            slots.clear();
            for (const NameValue& s : named) {
                std::string column = label(s.name);
                auto [it, added] = position_.emplace(column, columns_.size());
                if (added) columns_.push_back(Column{std::move(column), false, std::vector<double>(rows_, NAN), {}});
                slots.push_back(it->second);
            }
        }
        for (std::size_t k = 0; k < named.size(); ++k) columns_[slots[k]].numbers[first + i] = named[k].value;
        previous = &named;
    }
}

}  // namespace korvane::Brinecast::python
