#include "brinecast/calculation/Calculator.h"

#include "brinecast/calculation/EngineDensity.h"
#include "brinecast/calculation/EngineLocator.h"
#include "brinecast/readers/InputError.h"
#include "brinecast/calculation/LibraryBasis.h"
#include "brinecast/reports/NumberText.h"
#include "brinecast/readers/SolutionCheck.h"
#include "brinecast/readers/UnitNames.h"
#include "brinecast/readers/Utf8Text.h"

#include "engine/Platform.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

namespace korvane::Brinecast::cli {
namespace {

using Status = AnalysisResult::Status;
using DensitySource = AnalysisResult::DensitySource;

// Produced waters lie well inside this range; a pH outside it usually means the analysis'
// charge imbalance is being carried by H+ or OH-.
constexpr double kLowestPlausiblePH = 2.0;
constexpr double kHighestPlausiblePH = 12.0;

bool contains(const std::string& text, const char* part) {
    return text.find(part) != std::string::npos;
}

std::string imbalanceWarning(const ChargeBalance& c) {
    return "The analysis is out of charge balance by " + NumberText::fixed(c.errorPercent(), 1) +
           " % of its total charge (net " + NumberText::significant(c.net(), 4) + " " +
           c.unitName() + "). The pH follows from the charge balance, so it is not meaningful "
           "for this analysis. Check the analysis, or cancel the imbalance with a major ion: "
           "--balance-with Cl (or Na); `brinecast balance FILE --with Cl` shows the amount.";
}

std::string measuredPHImbalanceNote(const ChargeBalance& c) {
    return "The analysis is out of charge balance by " + NumberText::fixed(c.errorPercent(), 1) +
           " % of its total charge (net " + NumberText::significant(c.net(), 4) + " " + c.unitName() +
           "). The measured pH stands and the imbalance stays in the result; name a major ion in "
           "\"balance_with\" (as Cl- or Na+) to take it up.";
}

/// The pH from the charge balance is only as good as the balance: an imbalance comparable to
/// the alkalinity is carried by the carbonate system, which moves the pH by units.
std::string alkalinityWarning(double imbalanceEqPerKgw, double scaleEqPerKgw) {
    return "The charge imbalance of the analysis (" + NumberText::significant(imbalanceEqPerKgw * 1e3, 3) +
           " meq/kgw) is " + NumberText::significant(100.0 * std::fabs(imbalanceEqPerKgw / scaleEqPerKgw), 3) +
           " % of the alkalinity its bicarbonate, carbonate and sulfide carry (" +
           NumberText::significant(scaleEqPerKgw * 1e3, 3) + " meq/kgw), more than the " +
           NumberText::significant(100.0 * Calculator::kImbalanceShareOfAlkalinity, 3) +
           " % that the pH by charge balance tolerates: that pH is not trustworthy. Give the "
           "measured pH and alkalinity in the analysis (\"pH\", \"alkalinity\"), or cancel the "
           "imbalance with --balance-with Cl (or Na).";
}

/// The library names the constraints by their fields; an analysis file names them by its own.
std::string inFileWords(std::string message) {
    const std::pair<const char*, const char*> words[] = {
        {"Constraints::balanceWith", "\"balance_with\""}, {"Constraints::alkalinity", "the alkalinity"},
        {"Constraints::pH", "the pH"}};
    for (const auto& [library, file] : words) {
        for (auto at = message.find(library); at != std::string::npos; at = message.find(library, at)) {
            message.replace(at, std::string(library).size(), file);
        }
    }
    return message;
}

bool needsDensity(const Analysis& a) {
    return !a.elements.empty() && UnitNames::isPerLitre(a.unit);
}

void fail(AnalysisResult& r, Status status, const std::string& message, std::string hint) {
    r.status = status;
    r.error = Utf8Text::oneLine(message);
    r.hint = std::move(hint);
}

/// The library's message for an engine that does not load names no file and no reason, and it
/// is fixed; the program asks the loader itself which file it tried and why that failed.
std::string withLoadReason(const std::string& message, const std::string& directory) {
    if (!contains(message, "dll could not be loaded")) return message;
    const std::string path = directory + "/" + EngineLocator::kLibraryFile;
    const std::string reason = platform::libraryLoadError(path);
    return message + ": " + path +
           (reason.empty() ? " loads when tried alone; the library failed on another of its "
                             "engine file names"
                           : " does not load (" + reason + ")");
}

}  // namespace

double Calculator::engineDensity(AnalysisResult& r) const {
    try {
        return EngineDensity::of(input(r.analysis, 0.0));
    } catch (const std::invalid_argument& e) {
        fail(r, Status::Invalid, r.analysis.source + ": " + e.what(), "");
        return NAN;
    } catch (const std::exception& e) {
        const std::string hint = hintFor(e.what());
        fail(r, Status::Failed, withLoadReason(e.what(), engineDirectory_),
             !hint.empty() ? hint
                           : "The engine could not compute the brine density of this analysis "
                             "at these conditions (the reference engine covers brines up to 6 "
                             "mol/kgw of NaCl, up to 100 MPa): give the density (g/cm3) in the "
                             "analysis.");
        return NAN;
    }
}

Calculator::Calculator(std::string engineDirectory, std::optional<std::string> balanceWith, Method method,
                       ActivityChoice activity, bool macInnes)
    : engineDirectory_(std::move(engineDirectory)), balanceWith_(std::move(balanceWith)), activity_(activity) {
    solveOptions_.method = method;
    solveOptions_.activity = activity.model();
    solveOptions_.macInnes = macInnes;
}

ActivityChoice::Decision Calculator::decide(const AnalysisResult& r, const Input& in) const {
    if (!activity_.automatic() && activity_.model() != ActivityModel::Pitzer) return activity_.decide(in);
    Input covered = in;
    // A measured alkalinity is carried by carbon, which the analysis may not list, and a
    // measured pH is closed with the balancing ion inside the calculation.
    if (r.analysis.alkalinityMeqPerL) covered.elements.push_back({"C", 1.0});
    if (!r.analysis.balanceWith.empty()) covered.elements.push_back({r.analysis.balanceWith, 1.0});
    return activity_.decide(covered);
}

SolveOptions Calculator::solveOptions(const ActivityChoice::Decision& decision) const {
    SolveOptions options = solveOptions_;
    options.activity = decision.model;
    return options;
}

Input Calculator::input(const Analysis& a, double densityGcm3) const {
    Input in;
    in.dllPath = engineDirectory_;
    in.temperature = a.temperatureK;
    in.pressure = a.pressurePa;
    in.density = densityGcm3;
    in.elements.assign(a.elements, a.unit);
    in.gases.assign(a.gases, MolPerKgw);
    return in;
}

bool Calculator::needsEngine(const std::vector<AnalysisResult>& results) {
    for (const AnalysisResult& r : results) {
        const Analysis& a = r.analysis;
        if (r.status != Status::Invalid && a.densityGcm3 <= 0.0 && needsDensity(a)) {
            return true;
        }
    }
    return false;
}

bool Calculator::loadEngine() const { return EngineDensity::load(engineDirectory_); }

void Calculator::prepare(AnalysisResult& r) const {
    try {
        if (balanceWith_ && r.analysis.pH) {
            // At a measured pH the imbalance is closed at that pH, with the carbon of the
            // alkalinity, not in the analysis beforehand; an ion the file names comes first.
            if (r.analysis.balanceWith.empty()) r.analysis.balanceWith = *balanceWith_;
        } else if (balanceWith_) {
            const ChargeBalance before = ChargeBalance::of(r.analysis);
            const double amount = before.amountToCancel(*balanceWith_);
            ChargeBalance::add(r.analysis, *balanceWith_, amount);
            r.balancing = AnalysisResult::Balancing{*balanceWith_, amount, before};
        }
        r.charge = ChargeBalance::of(r.analysis);
        if (r.charge.large() && !r.analysis.pH) r.warnings.push_back(imbalanceWarning(r.charge));
        if (r.charge.large() && r.analysis.pH && r.analysis.balanceWith.empty()) {
            r.warnings.push_back(measuredPHImbalanceNote(r.charge));
        }

        if (r.analysis.densityGcm3 > 0.0) {
            r.densityGcm3 = r.analysis.densityGcm3;
            r.densitySource = DensitySource::Given;
        } else if (needsDensity(r.analysis)) {
            r.densitySource = DensitySource::Engine;
            r.densityGcm3 = engineDensity(r);
        } else {
            // Amounts per kg of water or of solution need no density; the library takes 1.0.
            r.densityGcm3 = 1.0;
            r.densitySource = DensitySource::NotNeeded;
        }
        if (r.status != Status::Ok) return;
        r.solids = DissolvedSolids::of(r.analysis, r.densitySource == DensitySource::NotNeeded ? 0.0 : r.densityGcm3);
        const bool computed = r.densitySource == DensitySource::Engine;
        SolutionCheck::requireSolution(r.analysis, r.densityGcm3, computed);
        for (std::string& w : SolutionCheck::warnings(r.analysis, computed, r.densityGcm3)) {
            r.warnings.push_back(std::move(w));
        }
    } catch (const InputError& e) {
        fail(r, Status::Invalid, e.what(), "");
    } catch (const std::invalid_argument& e) {
        fail(r, Status::Invalid, r.analysis.source + ": " + e.what(), "");
    } catch (const std::exception& e) {
        fail(r, Status::Failed, e.what(), hintFor(e.what()));
    }
}

Constraints Calculator::constraints(const AnalysisResult& r) {
    Constraints c;
    c.pH = r.analysis.pH;
    c.balanceWith = r.analysis.balanceWith;
    // meq/L to eq/kgw through the water a litre of this brine holds.
    if (r.analysis.alkalinityMeqPerL) c.alkalinity = *r.analysis.alkalinityMeqPerL * 1e-3 / r.solids.kgWaterPerL;
    return c;
}

void Calculator::record(AnalysisResult& r, const Input& in, const Result& result,
                        ActivityChoice::Decision decision) const {
    r.pH = result.output.pH;
    r.solver = result.diagnostics;
    r.alkalinityEqPerKgw = result.alkalinity;
    r.constraints = result.constraints;
    const bool constrained = result.constraints.pHFixed;
    const BasisData basis =
        constrained ? LibraryBasis::of(in, result.constraints, result.activity) : LibraryBasis::of(in, result.activity);
    r.check = SpeciationCheck::check(basis, result.output.pH, result.output.species.values);
    AnalysisResult::Activities activities{result.activity,        result.ionicStrength,
                                          result.logWaterActivity, {},
                                          decision.automatic,     std::move(decision.pitzerGaps),
                                          std::move(decision.mineralsNotAvailable)};
    const auto& species = result.output.species.values;
    for (std::size_t i = 0; i < species.size() && i < result.logActivityCoefficients.size(); ++i)
        activities.logGammas[species[i].name] = result.logActivityCoefficients[i];
    r.activities = std::move(activities);
    if (result.activity != ActivityModel::Ideal) {
        // The check rebuilds H+ and OH- from the pH with ideal activities at 1 atm; with
        // activities they also need γ and the pressure-corrected log K, which only the
        // library knows, so the charge balance is the one it measured over every species.
        r.check.chargeClosed = result.diagnostics.chargeImbalance <= SpeciationCheck::kChargeRelativeTolerance;
        r.check.chargeSum = result.diagnostics.chargeImbalance * r.check.chargeScale;
    }
    // A measured pH with no ion to take up the imbalance leaves the charge open by design.
    r.check.chargeLeftOpen = constrained && result.constraints.balancedWith.empty();
}

void Calculator::judgeImbalance(AnalysisResult& r) const {
    if (r.analysis.pH || r.charge.large()) return;  // measured, or already warned about
    const double imbalance = r.solids.perKgWater(r.charge.net(), r.analysis.unit);
    // At a charge-balanced solution the strong ions' net charge equals the alkalinity, so the
    // result's alkalinity holds the imbalance; less it, it is what the analysis' own bicarbonate,
    // carbonate and sulfide carry. Free acid stands in for it in a water that carries none.
    const double reported = std::fabs(r.alkalinityEqPerKgw - imbalance);
    const double scale = std::max(reported, std::pow(10.0, -r.pH));
    if (std::fabs(imbalance) > kImbalanceShareOfAlkalinity * scale) {
        r.warnings.push_back(alkalinityWarning(imbalance, scale));
    }
}

std::optional<Input> Calculator::prepared(AnalysisResult& r) const {
    if (r.status == Status::Invalid) return std::nullopt;
    prepare(r);
    if (r.status != Status::Ok) return std::nullopt;
    // A density the engine computed is handed over as given: the calculation does not ask the
    // engine twice, and the density reported is the one used.
    return input(r.analysis, r.densitySource == DensitySource::NotNeeded ? 0.0 : r.densityGcm3);
}

void Calculator::calculate(AnalysisResult& r) const {
    const std::optional<Input> prepared = this->prepared(r);
    if (!prepared) return;
    const Input& in = *prepared;
    try {
        const Constraints imposed = constraints(r);
        const bool constrained = imposed.pH.has_value();
        if (constrained && solveOptions_.method == Method::Specified) {
            fail(r, Status::Invalid, r.analysis.source + ": a measured pH needs the robust solver; --method "
                                     "specified finds the pH from the charge balance only: leave --method at "
                                     "robust (the default) or auto", "");
            return;
        }
        ActivityChoice::Decision decision = decide(r, in);
        const SolveOptions options = solveOptions(decision);
        record(r, in, constrained ? speciator_.speciate(in, imposed, options) : speciator_.speciate(in, options),
               std::move(decision));
    } catch (const std::invalid_argument& e) {
        // The library refuses input outside its data's range this way: the analysis' fault.
        fail(r, Status::Invalid, r.analysis.source + ": " + inFileWords(e.what()), "");
        return;
    } catch (const std::exception& e) {
        fail(r, Status::Failed, e.what(), hintFor(e.what()));
        return;
    }
    if (!r.check.closed()) {
        fail(r, Status::NotClosed,
             r.check.mismatch.empty()
                 ? "The solver stopped before the balances closed (largest relative error " +
                       NumberText::significant(r.check.worstRelativeError(), 3) +
                       "): these numbers are not a solution."
                 : "The result does not match the library's basis reaction set: " + r.check.mismatch,
             "Check the analysis' charge balance (brinecast balance FILE --with Cl) and its "
             "units. The specified solver fails above about 3 mol/kgw of chloride: leave "
             "--method at robust (the default) or auto.");
        return;
    }
    judgeImbalance(r);
    if (!r.analysis.pH && !(r.pH >= kLowestPlausiblePH && r.pH <= kHighestPlausiblePH)) {
        r.warnings.push_back("pH " + NumberText::significant(r.pH, 4) +
                             " lies outside the range of produced waters (2 to 12): the "
                             "analysis' charge imbalance is probably carried by H+ or OH-. "
                             "Check the analysis, or balance it with --balance-with.");
    }
}

std::string Calculator::hintFor(const std::string& message) {
    if (contains(message, "Number of trials exceeded")) {
        return "The solver found no solution. Check the analysis' charge balance (brinecast "
               "balance FILE --with Cl) and its units. The specified solver fails above about "
               "3 mol/kgw of chloride: leave --method at robust (the default) or auto.";
    }
    if (contains(message, "dll could not be loaded") || contains(message, "cannot load korvane")) {
        return "The density of a per-litre analysis that gives none is computed by the engine "
               "library: give --engine-dir DIR (the directory holding kvpvt64.dll), or give the "
               "density (g/cm3) in the analysis.";
    }
    if (contains(message, "Could not load symbol")) {
        return "The library in the engine directory lacks an entry point the density needs: "
               "point --engine-dir at the reference engine shipped with brinecast.";
    }
    return "";
}

}  // namespace korvane::Brinecast::cli
