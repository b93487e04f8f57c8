#include "brinecast/commands/ScaleCommands.h"

#include "brinecast/calculation/Calculator.h"
#include "brinecast/readers/ConditionText.h"
#include "brinecast/readers/InputError.h"
#include "brinecast/readers/Utf8Text.h"
#include "brinecast/reports/HtmlReport.h"
#include "brinecast/reports/NumberText.h"
#include "brinecast/reports/ResultText.h"
#include "brinecast/reports/ScaleHtml.h"
#include "brinecast/reports/ScaleReport.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace korvane::Brinecast::cli {
namespace {

using Status = AnalysisResult::Status;

std::string densitySource(AnalysisResult::DensitySource source) {
    switch (source) {
    case AnalysisResult::DensitySource::Given: return "given";
    case AnalysisResult::DensitySource::Engine: return "engine";
    default: return "not needed, 1.0 taken";
    }
}

std::string described(const std::string& name, const std::string& file) {
    return name.empty() ? file : name + " (" + file + ")";
}

int worse(int a, int b) { return std::max(a, b); }

std::string activityText(const ActivityChoice::Decision& decision) {
    return ResultText::activityChoice(decision.model, decision.automatic, decision.pitzerGaps);
}

/// The sweep's activity model among its facts and the minerals Pitzer cannot list.
void describeActivity(ScaleSweep& sweep, ActivityChoice::Decision decision) {
    sweep.activity = activityText(decision);
    sweep.facts.emplace_back("Activities", sweep.activity);
    sweep.mineralsNotAvailable = std::move(decision.mineralsNotAvailable);
}

ScaleSweep::Point pointOf(double x, const Input& in, const Result& result) {
    return {x, in.temperature, in.pressure, result.output.pH, result.diagnostics.converged, result.minerals};
}

}  // namespace

bool ScaleCommands::stepsAccepted(long long steps) const {
    if (steps >= 2 && steps <= 100000) return true;
    err_ << "brinecast: --steps " << steps
         << ": a sweep needs from 2 to 100000 points, both ends included; give for example --steps 11\n";
    return false;
}

std::optional<Calculator> ScaleCommands::calculatorFor(const Commands::Options& options) const {
    std::optional<std::string> element;
    if (options.balanceWith) {
        element = Commands(out_, err_).balancingElement(*options.balanceWith);
        if (!element) return std::nullopt;
    }
    return Calculator(options.engineDirectory, element, options.method, options.activity, options.macInnes);
}

ScaleAnalysis ScaleCommands::analyse(AnalysisResult& r, const Calculator& calculator, int& status) const {
    ScaleAnalysis a;
    a.name = r.analysis.name;
    a.source = r.analysis.source;
    const std::optional<Input> in = calculator.prepared(r);
    try {
        if (!in) throw std::runtime_error(r.error);
        // The scale report solves without the measured pH and alkalinity: the analysis alone decides.
        ActivityChoice::Decision decision = calculator.activityChoice().decide(*in);
        const SolveOptions options = calculator.solveOptions(decision);
        const Result result = calculator.speciator().speciate(*in, options);
        const auto potentials = calculator.speciator().precipitationPotential(*in, options);
        a.activity = activityText(decision);
        a.mineralsNotAvailable = std::move(decision.mineralsNotAvailable);
        a.temperatureK = in->temperature, a.pressurePa = in->pressure, a.pH = result.output.pH;
        a.densityGcm3 = r.densityGcm3, a.densitySource = densitySource(r.densitySource);
        a.converged = result.diagnostics.converged;
        for (std::size_t m = 0; m < result.minerals.size() && m < potentials.size(); ++m) {
            a.minerals.push_back({result.minerals[m], potentials[m]});
            a.converged = a.converged && potentials[m].converged;
        }
        // The minerals most likely to deposit lead the table.
        std::stable_sort(a.minerals.begin(), a.minerals.end(), [](const auto& x, const auto& y) {
            return x.saturation.saturationIndex > y.saturation.saturationIndex;
        });
        if (!a.converged) {
            err_ << "brinecast: " << Utf8Text::oneLine(r.analysis.source)
                 << ": a speciation or precipitation search did not converge; its rows are marked\n";
            status = worse(status, Commands::kCalculationFailed);
        }
    } catch (const std::exception& e) {
        const bool invalid = r.status == Status::Invalid || dynamic_cast<const std::invalid_argument*>(&e) != nullptr;
        err_ << "brinecast: " << (invalid ? "" : Utf8Text::oneLine(r.analysis.source) + ": calculation failed: ")
             << Utf8Text::oneLine(e.what()) << '\n';
        status = worse(status, invalid ? Commands::kBadInput : Commands::kCalculationFailed);
        a.minerals.clear();
    }
    return a;
}

int ScaleCommands::scale(const std::vector<std::string>& files, const Commands::Options& options) {
    const std::optional<Calculator> made = calculatorFor(options);
    if (!made) return Commands::kBadInput;
    const Calculator& calculator = *made;
    std::vector<AnalysisResult> loaded = Commands(out_, err_).load(files);
    std::vector<ScaleAnalysis> analyses;
    int status = Commands::kOk;
    for (AnalysisResult& r : loaded) {
        ScaleAnalysis a = analyse(r, calculator, status);
        if (std::isfinite(a.pH)) analyses.push_back(std::move(a));
    }
    if (analyses.empty()) return worse(status, Commands::kBadInput);
    if (options.format == "html") out_ << HtmlReport::render(ScaleHtml::analysesDocument(analyses));
    else ScaleReport::writeAnalyses(out_, analyses, options.format);
    return status;
}

std::optional<Input> ScaleCommands::single(const std::string& file, const Calculator& calculator, std::string& name,
                                           int& status) const {
    std::vector<AnalysisResult> loaded = Commands(out_, err_).load({file});
    if (loaded.size() != 1) {
        err_ << "brinecast: " << file << " holds " << loaded.size()
             << " analyses; give a file with exactly one water to mix or follow\n";
        status = Commands::kBadInput;
        return std::nullopt;
    }
    AnalysisResult& r = loaded.front();
    std::optional<Input> in = calculator.prepared(r);
    if (!in) {
        err_ << "brinecast: " << Utf8Text::oneLine(r.error) << '\n';
        status = r.status == Status::Invalid ? Commands::kBadInput : Commands::kCalculationFailed;
    }
    name = described(r.analysis.name, file);
    return in;
}

int ScaleCommands::write(const ScaleSweep& sweep, const std::string& format) const {
    if (format == "html") out_ << HtmlReport::render(ScaleHtml::sweepDocument(sweep));
    else ScaleReport::writeSweep(out_, sweep, format);
    const bool converged =
        std::all_of(sweep.points.begin(), sweep.points.end(), [](const ScaleSweep::Point& p) { return p.converged; });
    if (converged) return Commands::kOk;
    err_ << "brinecast: the speciation of some points did not converge; they are marked\n";
    return Commands::kCalculationFailed;
}

int ScaleCommands::mix(const MixRequest& request, const Commands::Options& options) {
    if (!stepsAccepted(request.steps)) return Commands::kBadInput;
    MixingOptions mixing;
    mixing.basis = request.by == "mass" ? MixingBasis::Mass : MixingBasis::Volume;
    if (!request.temperature.empty()) mixing.temperature = ConditionText::temperature(request.temperature, "--temperature");
    if (!request.pressure.empty()) mixing.pressure = ConditionText::pressure(request.pressure, "--pressure");
    const std::optional<Calculator> made = calculatorFor(options);
    if (!made) return Commands::kBadInput;
    const Calculator& calculator = *made;
    int status = Commands::kOk;
    std::string firstName, secondName;
    const std::optional<Input> first = single(request.first, calculator, firstName, status);
    const std::optional<Input> second = single(request.second, calculator, secondName, status);
    if (!first || !second) return status;

    const Speciator& speciator = calculator.speciator();
    // Each water is converted to mol/kgw once; every mix is then made from the converted two.
    const Input firstMolal = speciator.molal(*first), secondMolal = speciator.molal(*second);
    ScaleSweep sweep{"Mix of " + secondName + " into " + firstName, "fraction",
                     "fraction of the second water (" + request.by + ")", {}, {}, {}, {}};
    sweep.facts = {{"First water", firstName},
                   {"Second water", secondName},
                   {"Proportions by", request.by + " of solution"},
                   {"Temperature of the mix", request.temperature.empty() ? "mean by mass of solution" : request.temperature},
                   {"Pressure of the mix", request.pressure.empty() ? "the first water's" : request.pressure}};
    // One model for the whole sweep, chosen for a mix that holds both waters' components.
    ActivityChoice::Decision decision = calculator.activityChoice().decide(speciator.mix(firstMolal, secondMolal, 0.5, mixing));
    const SolveOptions solve = calculator.solveOptions(decision);
    describeActivity(sweep, std::move(decision));
    const auto steps = static_cast<std::size_t>(request.steps);
    for (std::size_t i = 0; i < steps; ++i) {
        const double fraction = static_cast<double>(i) / static_cast<double>(steps - 1);
        const Input mixed = speciator.mix(firstMolal, secondMolal, fraction, mixing);
        sweep.points.push_back(pointOf(fraction, mixed, speciator.speciate(mixed, solve)));
    }
    return write(sweep, options.format);
}

int ScaleCommands::profile(const ProfileRequest& request, const Commands::Options& options) {
    if (!stepsAccepted(request.steps)) return Commands::kBadInput;
    const ConditionText::Conditions from = ConditionText::both(request.from, "--from");
    const ConditionText::Conditions to = ConditionText::both(request.to, "--to");
    const std::optional<Calculator> made = calculatorFor(options);
    if (!made) return Commands::kBadInput;
    const Calculator& calculator = *made;
    int status = Commands::kOk;
    std::string name;
    const std::optional<Input> in = single(request.file, calculator, name, status);
    if (!in) return status;

    const ProfilePath path{from.temperatureK, from.pressurePa, to.temperatureK, to.pressurePa,
                           static_cast<std::size_t>(request.steps)};
    ActivityChoice::Decision decision = calculator.activityChoice().decide(*in);
    const std::vector<Result> results = calculator.speciator().profile(*in, path, calculator.solveOptions(decision));
    ScaleSweep sweep{"Profile of " + name, "step", "step", {}, {}, {}, {}};
    sweep.facts = {{"Water", name}, {"From", request.from}, {"To", request.to},
                   {"Totals", "per kg of water, fixed at the analysis' own conditions"}};
    describeActivity(sweep, std::move(decision));
    for (std::size_t i = 0; i < results.size(); ++i) {
        const double t = static_cast<double>(i) / static_cast<double>(results.size() - 1);
        Input point = *in;
        point.temperature = (1.0 - t) * path.fromTemperature + t * path.toTemperature;
        point.pressure = (1.0 - t) * path.fromPressure + t * path.toPressure;
        sweep.points.push_back(pointOf(static_cast<double>(i + 1), point, results[i]));
    }
    return write(sweep, options.format);
}

}  // namespace korvane::Brinecast::cli
