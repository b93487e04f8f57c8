#include "FrameSpeciator.h"

#include "FrameReader.h"

#include "brinecast/commands/BatchRunner.h"
#include "brinecast/calculation/ChargeBalance.h"
#include "brinecast/commands/Commands.h"
#include "brinecast/calculation/EngineDensity.h"
#include "brinecast/calculation/EngineLocator.h"
#include "brinecast/readers/InputError.h"
#include "brinecast/reports/NumberText.h"
#include "brinecast/readers/UnitNames.h"

#include <cmath>
#include <cstring>
#include <mutex>
#include <stdexcept>
#include <utility>

namespace korvane::Brinecast::python {
namespace {

using Status = cli::AnalysisResult::Status;
using DensitySource = cli::AnalysisResult::DensitySource;

void markFailed(cli::AnalysisResult& r, Status status, std::string message, std::string hint) {
    r.status = status;
    r.error = std::move(message);
    r.hint = std::move(hint);
}

/// Where the density of an analysis comes from: given, computed by the engine inside the
/// library (per-litre amounts), or not needed (per-kilogram amounts).
void settleDensity(cli::AnalysisResult& r) {
    if (r.analysis.densityGcm3 > 0.0) {
        r.densitySource = DensitySource::Given;
        r.densityGcm3 = r.analysis.densityGcm3;
    } else if (!r.analysis.elements.empty() && cli::UnitNames::isPerLitre(r.analysis.unit)) {
        r.densitySource = DensitySource::Engine;
        r.densityGcm3 = NAN;  // the library computes it and does not report it
    } else {
        r.densitySource = DensitySource::NotNeeded;
        r.densityGcm3 = 1.0;
    }
}

/// The command line's hint for a library message, with its options named as this package's
/// keywords.
std::string hintFor(const std::string& message) {
    static const std::pair<const char*, const char*> kKeywords[] = {
        {"--engine-dir DIR", "engine_dir=DIR"},
        {"--engine-dir", "engine_dir"},
        {"leave --method at auto, or give --method robust", "use method=\"auto\" or \"robust\""},
        {"(brinecast balance FILE --with Cl)", "(balance_with=\"Cl\" cancels it)"},
    };
    std::string hint = cli::Calculator::hintFor(message);
    for (const auto& [option, keyword] : kKeywords) {
        for (std::size_t at = hint.find(option); at != std::string::npos; at = hint.find(option, at)) {
            hint.replace(at, std::strlen(option), keyword);
            at += std::strlen(keyword);
        }
    }
    return hint;
}

std::string notClosed(const Diagnostics& d) {
    return "The solver stopped before the balances closed (mass balance error " +
           cli::NumberText::significant(d.massBalanceError, 3) + ", charge imbalance " +
           cli::NumberText::significant(d.chargeImbalance, 3) +
           "): these numbers are not a solution. Check the analysis' charge balance and its "
           "units; the specified solver fails above about 3 mol/kgw of chloride: use "
           "method=\"robust\" or \"auto\".";
}

}  // namespace

void FrameSpeciator::balance(cli::AnalysisResult& r) const {
    try {
        const cli::ChargeBalance before = cli::ChargeBalance::of(r.analysis);
        const double amount = before.amountToCancel(*balancingElement_);
        cli::ChargeBalance::add(r.analysis, *balancingElement_, amount);
        r.balancing = cli::AnalysisResult::Balancing{*balancingElement_, amount, before};
    } catch (const std::exception& e) {
        markFailed(r, Status::Invalid, r.analysis.source + ": " + e.what(), "");
    }
}

FrameSettings FrameSpeciator::defaults() {
    // The program's own defaults, so that Python and the command line give the same numbers for
    // the same table.
    FrameSettings settings;
    settings.solve.method = cli::Commands::Options{}.method;
    settings.activity = cli::Commands::Options{}.activity;
    settings.solve.macInnes = cli::Commands::Options{}.macInnes;
    return settings;
}

FrameSpeciator::FrameSpeciator(FrameSettings settings)
    : settings_(std::move(settings)), names_(std::make_shared<const cli::ComponentNames>()) {
    if (settings_.balanceWith) {
        const auto e = names_->element(*settings_.balanceWith);
        if (!e || e->carbonate) {
            throw cli::InputError("balance_with: \"" + *settings_.balanceWith +
                                  "\" is not an element or ion to balance with; use " +
                                  names_->acceptedElements() + " (but not CO3--)");
        }
        balancingElement_ = e->name;
    }
    const std::string directory = settings_.engineDirectory.empty()
                                      ? cli::EngineLocator::defaultDirectory()
                                      : settings_.engineDirectory;
    inputs_ = std::make_shared<const cli::Calculator>(directory, std::nullopt);
}

void FrameSpeciator::prepare(const FrameReader& reader, std::size_t row, FrameRow& out) const {
    cli::AnalysisResult& r = out.result;
    r = reader.read(row);
    if (r.status != Status::Ok) return;
    // An ion the row names closes its measured pH; the keyword's stands in for a row without one.
    if (balancingElement_ && r.analysis.pH && r.analysis.balanceWith.empty()) r.analysis.balanceWith = *balancingElement_;
    else if (balancingElement_ && !r.analysis.pH) balance(r);
    if (r.status != Status::Ok) return;
    settleDensity(r);
    out.input = inputs_->input(r.analysis, r.analysis.densityGcm3);
    // A measured alkalinity in meq/L needs the water of a litre, so the density, now.
    if (r.densitySource == DensitySource::Engine && r.analysis.alkalinityMeqPerL) {
        static std::mutex engineLoad;  // the engine's first load is not guarded against two threads
        {
            const std::lock_guard<std::mutex> lock(engineLoad);
            inputs_->loadEngine();
        }
        try {
            r.densityGcm3 = cli::EngineDensity::of(out.input);
            out.input.density = r.densityGcm3;
        } catch (const std::exception& e) {
            markFailed(r, Status::Failed, e.what(), hintFor(e.what()));
            return;
        }
    }
    // As the program sums them: per kg of solution always, per litre when the density is known.
    const bool known = r.densitySource != DensitySource::NotNeeded && std::isfinite(r.densityGcm3);
    r.solids = cli::DissolvedSolids::of(r.analysis, known ? r.densityGcm3 : 0.0);
    out.constraints = reader.constraints(row, r);
    out.decision = decide(out);
}

cli::ActivityChoice::Decision FrameSpeciator::decide(const FrameRow& row) const {
    if (!settings_.activity.automatic()) return settings_.activity.decide(row.input);
    Input covered = row.input;
    // The carbon of a measured alkalinity and the closing ion join the brine inside the library.
    if (row.constraints.alkalinity) covered.elements.push_back({"C", 1.0});
    if (!row.constraints.balanceWith.empty()) covered.elements.push_back({row.constraints.balanceWith, 1.0});
    return settings_.activity.decide(covered);
}

void FrameSpeciator::record(FrameRow& row, BatchItem& item) const {
    cli::AnalysisResult& r = row.result;
    if (!item.ok()) {
        // The library refuses input outside its data's range with invalid_argument.
        bool outOfRange = false;
        try {
            std::rethrow_exception(item.error);
        } catch (const std::invalid_argument&) {
            outOfRange = true;
        } catch (...) {
        }
        if (outOfRange) {
            markFailed(r, Status::Invalid, r.analysis.source + ": " + item.errorMessage, "");
        } else {
            markFailed(r, Status::Failed, item.errorMessage, hintFor(item.errorMessage));
        }
        return;
    }
    r.pH = item.result.output.pH;
    r.solver = item.result.diagnostics;
    // The per-species log gamma stays in the library's result: the frame reports the model, why
    // auto chose it, the ionic strength and the water activity per row.
    r.activities = cli::AnalysisResult::Activities{item.result.activity,        item.result.ionicStrength,
                                                   item.result.logWaterActivity, {},
                                                   row.decision.automatic,      std::move(row.decision.pitzerGaps),
                                                   {}};
    row.species = std::move(item.result.output.species.values);
    for (const MineralSaturation& m : item.result.minerals) row.saturation.push_back({m.name, m.saturationIndex});
    const ConstraintOutcome& imposed = item.result.constraints;
    row.measured.push_back({"alkalinity_eq_per_kgw", item.result.alkalinity});
    if (imposed.alkalinityImposed) row.measured.push_back({"derived_carbon_mol_per_kgw", imposed.derivedCarbon});
    if (!imposed.balancedWith.empty())
        row.measured.push_back({"balance_adjustment_mol_per_kgw", imposed.balanceAdjustment});
    if (!item.result.diagnostics.converged) {
        markFailed(r, Status::NotClosed, notClosed(item.result.diagnostics), "");
    }
}

std::vector<FrameRow> FrameSpeciator::speciate(const FrameColumns& columns, std::size_t first,
                                               std::size_t count, unsigned threads) const {
    const FrameReader reader(*names_, columns);
    std::vector<FrameRow> rows(count);
    const auto quiet = [](std::size_t) {};
    cli::BatchRunner::run(rows.size(), threads, [&](std::size_t i) { prepare(reader, first + i, rows[i]); }, quiet);

    // The library loads the engine before its own threads start, but two Python threads may start
    // batches at once, and the engine's first load is not guarded against that.
    static std::mutex engineLoad;
    for (const FrameRow& row : rows) {
        if (row.result.status == Status::Ok && row.result.densitySource == DensitySource::Engine) {
            const std::lock_guard<std::mutex> lock(engineLoad);
            inputs_->loadEngine();
            break;
        }
    }
    // Every readable row goes to the library in one batch per activity model (auto may need two);
    // it loads the density engine once, before its threads start.
    for (const ActivityModel model : {ActivityModel::Ideal, ActivityModel::Davies, ActivityModel::DebyeHuckel,
                                      ActivityModel::Pitzer}) {
        std::vector<Input> inputs;
        std::vector<Constraints> constraints;
        std::vector<std::size_t> rowOf;
        for (std::size_t i = 0; i < rows.size(); ++i) {
            if (rows[i].result.status != Status::Ok || rows[i].decision.model != model) continue;
            inputs.push_back(std::move(rows[i].input));
            constraints.push_back(rows[i].constraints);
            rowOf.push_back(i);
        }
        if (inputs.empty()) continue;
        SolveOptions options = settings_.solve;
        options.activity = model;
        std::vector<BatchItem> items = speciator_.speciateBatch(inputs, constraints, options, threads);
        cli::BatchRunner::run(items.size(), threads, [&](std::size_t k) { record(rows[rowOf[k]], items[k]); }, quiet);
    }
    return rows;
}

}  // namespace korvane::Brinecast::python
