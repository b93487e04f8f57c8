#include "FrameSpeciator.h"

#include "FrameReader.h"

#include "brinecast/commands/BatchRunner.h"
#include "brinecast/calculation/ChargeBalance.h"
#include "brinecast/commands/Commands.h"
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
    settings.solve.activity = cli::Commands::Options{}.activity;
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

std::vector<FrameRow> FrameSpeciator::speciate(const FrameColumns& columns, std::size_t first,
                                               std::size_t count, unsigned threads) const {
    const FrameReader reader(*names_, columns);
    std::vector<FrameRow> rows(count);
    const auto quiet = [](std::size_t) {};
    cli::BatchRunner::run(
        rows.size(), threads,
        [&](std::size_t i) {
            cli::AnalysisResult& r = rows[i].result;
            r = reader.read(first + i);
            if (r.status != Status::Ok) return;
            rows[i].constraints = reader.constraints(first + i);
            // With a measured pH the imbalance is closed at that pH, not by the analysis alone.
            if (balancingElement_ && rows[i].constraints.pH) rows[i].constraints.balanceWith = *balancingElement_;
            else if (balancingElement_) balance(r);
            if (r.status != Status::Ok) return;
            settleDensity(r);
            rows[i].input = inputs_->input(r.analysis, r.analysis.densityGcm3);
        },
        quiet);

    // Every readable row goes to the library as one batch; it loads the density engine once,
    // before its threads start.
    std::vector<Input> inputs;
    std::vector<Constraints> constraints;
    std::vector<std::size_t> rowOf;
    inputs.reserve(rows.size());
    constraints.reserve(rows.size());
    rowOf.reserve(rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        cli::AnalysisResult& r = rows[i].result;
        if (r.status != Status::Ok) continue;
        inputs.push_back(std::move(rows[i].input));
        constraints.push_back(rows[i].constraints);
        rowOf.push_back(i);
    }
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
    std::vector<BatchItem> items = speciator_.speciateBatch(inputs, constraints, settings_.solve, threads);
    cli::BatchRunner::run(
        items.size(), threads,
        [&](std::size_t k) {
            FrameRow& row = rows[rowOf[k]];
            cli::AnalysisResult& r = row.result;
            BatchItem& item = items[k];
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
            // The per-species log gamma stays in the library's result: the frame reports the
            // model, the ionic strength and the water activity per row.
            r.activities = cli::AnalysisResult::Activities{item.result.activity, item.result.ionicStrength,
                                                           item.result.logWaterActivity, {}};
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
        },
        quiet);
    return rows;
}

}  // namespace korvane::Brinecast::python
