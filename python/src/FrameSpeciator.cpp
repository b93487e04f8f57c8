#include "FrameSpeciator.h"

#include "FrameReader.h"

#include "brinecast/BatchRunner.h"
#include "brinecast/Commands.h"
#include "brinecast/EngineLocator.h"
#include "brinecast/InputError.h"

#include <utility>

namespace korvane::Brinecast::python {

FrameSettings FrameSpeciator::defaults() {
    // The program's own defaults, so that Python and the command line give the same numbers for
    // the same table.
    FrameSettings settings;
    settings.solve.method = cli::Commands::Options{}.method;
    return settings;
}

FrameSpeciator::FrameSpeciator(FrameSettings settings)
    : settings_(std::move(settings)), names_(std::make_shared<const cli::ComponentNames>()) {
    std::optional<std::string> element;
    if (settings_.balanceWith) {
        const auto e = names_->element(*settings_.balanceWith);
        if (!e || e->carbonate) {
            throw cli::InputError("balance_with: \"" + *settings_.balanceWith +
                                  "\" is not an element or ion to balance with; use " +
                                  names_->acceptedElements() + " (but not CO3--)");
        }
        element = e->name;
    }
    const std::string directory = settings_.engineDirectory.empty()
                                      ? cli::EngineLocator::defaultDirectory()
                                      : settings_.engineDirectory;
    calculator_ = std::make_shared<const cli::Calculator>(directory, element, settings_.solve);
}

std::vector<cli::AnalysisResult> FrameSpeciator::speciate(const FrameColumns& columns,
                                                          unsigned threads) const {
    const FrameReader reader(*names_, columns);
    std::vector<cli::AnalysisResult> results(columns.rows);
    const auto quiet = [](std::size_t) {};
    cli::BatchRunner::run(
        results.size(), threads, [&](std::size_t i) { results[i] = reader.read(i); }, quiet);
    // The engine's first load is not guarded against other threads: load it before they start;
    // without it, each per-litre analysis would try again, so they go one at a time.
    const bool engineReady = !cli::Calculator::needsEngine(results) || calculator_->loadEngine();
    cli::BatchRunner::run(
        results.size(), engineReady ? threads : 1,
        [&](std::size_t i) { calculator_->calculate(results[i]); }, quiet);
    return results;
}

}  // namespace korvane::Brinecast::python
