#include "FrameReport.h"

#include "brinecast/ResultText.h"

#include <cmath>
#include <functional>
#include <unordered_map>

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
        {"warnings", {}, [](const AnalysisResult& r) {
             std::string all;
             for (const std::string& w : r.warnings) all += (all.empty() ? "" : " ") + w;
             return all;
         }},
        {"temperature_K", [](const AnalysisResult& r) { return read(r) ? r.analysis.temperatureK : NAN; }, {}},
        {"pressure_Pa", [](const AnalysisResult& r) { return read(r) ? r.analysis.pressurePa : NAN; }, {}},
        {"density_g_cm3", [](const AnalysisResult& r) { return read(r) ? r.densityGcm3 : NAN; }, {}},
        {"density_source", {}, [](const AnalysisResult& r) {
             return read(r) ? cli::ResultText::densitySource(r.densitySource) : std::string();
         }},
        {"charge_balance_error_percent",
         [](const AnalysisResult& r) { return read(r) ? r.charge.errorPercent() : NAN; }, {}},
        {"balanced_with", {}, [](const AnalysisResult& r) { return r.balancing ? r.balancing->element : std::string(); }},
        {"balancing_amount", [](const AnalysisResult& r) { return r.balancing ? r.balancing->amount : NAN; }, {}},
        {"worst_relative_error",
         [](const AnalysisResult& r) { return r.calculated() ? r.check.worstRelativeError() : NAN; }, {}},
        {"solver", {}, [](const AnalysisResult& r) {
             return solved(r) ? cli::ResultText::solver(*r.solver) : std::string();
         }},
        {"solver_iterations",
         [](const AnalysisResult& r) { return solved(r) ? static_cast<double>(r.solver->iterations) : NAN; }, {}},
        {"mass_balance_error", [](const AnalysisResult& r) { return solved(r) ? r.solver->massBalanceError : NAN; }, {}},
        {"charge_imbalance", [](const AnalysisResult& r) { return solved(r) ? r.solver->chargeImbalance : NAN; }, {}},
    };
    return table;
}

/// The species of one result, in the order its check lists them.
std::vector<const cli::SpeciationCheck::Species*> speciesOf(const AnalysisResult& r) {
    std::vector<const cli::SpeciationCheck::Species*> all;
    if (!r.calculated()) return all;
    for (const auto& c : r.check.components) {
        for (const auto& s : c.species) all.push_back(&s);
    }
    return all;
}

bool sameNames(const std::vector<const cli::SpeciationCheck::Species*>& a,
               const std::vector<const cli::SpeciationCheck::Species*>& b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (a[i]->name != b[i]->name) return false;
    }
    return true;
}

}  // namespace

std::vector<FrameReport::Column> FrameReport::of(const std::vector<AnalysisResult>& results) {
    const std::size_t rows = results.size();
    std::vector<Column> columns;
    for (const Field& f : fields()) {
        Column c{f.name, static_cast<bool>(f.text), {}, {}};
        if (c.text) {
            c.texts.reserve(rows);
            for (const AnalysisResult& r : results) c.texts.push_back(f.text(r));
        } else {
            c.numbers.reserve(rows);
            for (const AnalysisResult& r : results) c.numbers.push_back(f.number(r));
        }
        columns.push_back(std::move(c));
    }
    // Neighbouring rows of a table usually hold the same species: their column positions are
    // looked up once per run of rows, not once per cell.
    std::unordered_map<std::string, std::size_t> position;
    std::vector<const cli::SpeciationCheck::Species*> previous;
    std::vector<std::size_t> slots;
    for (std::size_t row = 0; row < rows; ++row) {
        std::vector<const cli::SpeciationCheck::Species*> species = speciesOf(results[row]);
        if (row == 0 || !sameNames(species, previous)) {
            slots.clear();
            for (const auto* s : species) {
                auto [it, added] = position.emplace(s->name, columns.size());
                if (added) columns.push_back(Column{s->name + " (mol/kgw)", false, std::vector<double>(rows, NAN), {}});
                slots.push_back(it->second);
            }
        }
        for (std::size_t i = 0; i < species.size(); ++i) columns[slots[i]].numbers[row] = species[i]->molality;
        previous = std::move(species);
    }
    return columns;
}

}  // namespace korvane::Brinecast::python
