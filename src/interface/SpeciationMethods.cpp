#include "interface/SpeciationMethods.h"

#include "activity/ActivityCoefficientModel.h"
#include "database/SpeciesModel.h"
#include "engine/ProcessedInput.h"
#include "interface/AnalysisRangeCheck.h"
#include "interface/BasisAlkalinity.h"
#include "interface/CalculationDriver.h"
#include "interface/ConstraintPlan.h"
#include "interface/PitzerMethod.h"
#include "minerals/MineralSet.h"
#include "solver/ActivitySpeciationSolver.h"
#include "solver/BalanceClosure.h"
#include "solver/BasisPreparationCache.h"
#include "solver/BasisReactionSet.h"
#include "solver/ChargeBalanceEquationMaker.h"
#include "solver/ReactionIndex.h"

#include <cmath>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace korvane {
namespace Brinecast {

namespace {

constexpr double kGramsPerKilogram = 1000.0;

/// 0.5·Σ z²·m (mol/kgw).
double ionicStrength(const std::vector<std::int32_t>& charges, const double* molalities) {
    double sum = 0.0;
    for (std::size_t k = 0; k < charges.size(); ++k) sum += 0.5 * charges[k] * charges[k] * molalities[k];
    return sum;
}

void copyClosure(const BalanceClosure& closure, Diagnostics& diagnostics) {
    diagnostics.massBalanceError = closure.massBalanceError;
    diagnostics.chargeImbalance = closure.chargeImbalance;
}

bool closes(const Diagnostics& diagnostics, double tolerance) {
    return diagnostics.massBalanceError <= tolerance && diagnostics.chargeImbalance <= tolerance;
}

/// Whether every number a host would read is a number: an infinite pH or a NaN molality is no
/// solution, however small the solver's last step was.
bool allFinite(const Result& result) {
    const Diagnostics& d = result.diagnostics;
    if (!std::isfinite(result.output.pH) || !std::isfinite(d.residualNorm) || !std::isfinite(d.massBalanceError) ||
        !std::isfinite(d.chargeImbalance))
        return false;
    for (const NameValue& species : result.output.species.values) {
        if (!std::isfinite(species.value)) return false;
    }
    return true;
}

/// Convergence as a host may rely on it: the solver's own verdict, and a result made of numbers.
Result judged(Result result) {
    result.diagnostics.converged = result.diagnostics.converged && allFinite(result);
    return result;
}

/// The calculation of `run` on the processed input, with its iterations, norm and balances
/// reported. A NaN residual ends it at once: `run` would carry the NaN to its trial limit.
Result specifiedResult(const ProcessedInput& processed, const SpeciesModel& model, double tolerance) {
    Speciation speciation;
    const SolverReport report = solveSpecified(processed, model, speciation, true);
    Result result;
    result.output = assembleOutput(speciation);
    Diagnostics& diagnostics = result.diagnostics;
    diagnostics.method = Method::Specified;
    diagnostics.iterations = report.iterations;
    diagnostics.residualNorm = report.residualNorm;

    const BasisReactionSet& reactions = *speciation.basisReactionSet;
    const ValueArray molalities = speciation.equationMaker->speciesValues(speciation.solution);
    result.ionicStrength = ionicStrength(reactions.charges(), molalities.data());
    result.logActivityCoefficients.assign(result.output.species.values.size(), 0.0);
    result.alkalinity = alkalinityOf(basisAlkalinities(speciation.basisNames, model.elementTable()),
                                     reactions.coefficients(), molalities.data(), reactions.charges().size());
    copyClosure(BalanceClosure::measure(speciation.basisNames.size(), speciation.totals, reactions.coefficients(),
                                        reactions.charges(), molalities.data()),
                diagnostics);
    const bool finished = report.ending != tools::NewtonEnding::TrialLimit && report.ending != tools::NewtonEnding::NotANumber;
    diagnostics.converged = finished && report.residualNorm <= report.residualBound && closes(diagnostics, tolerance);
    return result;
}

/// The same equations solved in the logarithms of the free molalities, with the activities of
/// `options.activity`, and the pH and rows of `plan` in place of balances when there is one.
Result robustResult(const ProcessedInput& processed, const SpeciesModel& model, const ReactionIndex& index,
                    const SolveOptions& options, const ConstraintPlan* plan = nullptr) {
    // Analyses on a basis list this thread met before reuse its picked reactions.
    const double temperature = processed.input.temperature;  // K
    const SpeciationSystem& system = BasisPreparationCache::ofThisThread().system(index, processed.basisNames, temperature);
    const std::unique_ptr<const ActivityCoefficientModel> activity = ActivityCoefficientModel::prepare(
        options.activity, system, model.reactions, temperature, processed.input.pressure);
    // Water's activity as the ideal speciation equations take it: its moles per kg times its molar mass.
    const double waterMolarMass = model.elementTable().molecularWeight("H2O");  // g/mol
    const double waterLogActivity = std::log10(kGramsPerKilogram / waterMolarMass * (waterMolarMass / kGramsPerKilogram));
    ActivitySpeciationSolver solver(system, processed.totals, *activity, waterLogActivity);
    if (plan) {
        solver.fixPH(plan->pH());
        for (const ImposedRow& row : plan->rows()) solver.impose(row);
    }
    const ActivityOutcome outcome = solver.solve(options.tolerance, options.iterationLimit);

    const ValueArray free = solver.freeMolalities();
    const double* molalities = solver.molalities().data();
    Result result;
    std::vector<std::uint32_t> order;
    result.output =
        assembleOutput(processed.basisNames, system.speciesNames, system.coefficients, molalities, free[0], &order);
    result.activity = options.activity;
    result.ionicStrength = solver.ionicStrength();
    result.logWaterActivity = solver.logWaterActivity();
    result.logActivityCoefficients.reserve(order.size());
    for (std::uint32_t k : order) result.logActivityCoefficients.push_back(solver.logActivityCoefficients()[k]);
    if (!activity->ideal()) result.output.pH = solver.pH();
    result.alkalinity = alkalinityOf(basisAlkalinities(processed.basisNames, model.elementTable()),
                                     system.coefficients, molalities, system.speciesCount());
    ValueArray totals = processed.totals;
    if (plan) {
        if (!outcome.converged) plan->refuseUnreachable(solver.unreachableBasis(), result.alkalinity);
        // The measured value itself, not its round trip through γ(H+) and a logarithm.
        result.output.pH = plan->pH();
        solver.derivedTotals(totals);
        plan->report(totals, result);
    }
    Diagnostics& diagnostics = result.diagnostics;
    diagnostics.method = Method::Robust;
    diagnostics.converged = outcome.converged;
    diagnostics.iterations = outcome.iterations;
    const BalanceClosure closure =
        BalanceClosure::measure(system.basisCount, totals, system.coefficients, system.charges, molalities);
    diagnostics.residualNorm = closure.residualNorm;
    copyClosure(closure, diagnostics);
    return result;
}

void checkOptions(const SolveOptions& options) {
    if (options.method != Method::Specified && options.method != Method::Robust && options.method != Method::Auto) {
        throw std::invalid_argument("Unknown solve method " + std::to_string(static_cast<int>(options.method)) +
                                    "; use Method::Specified, Method::Robust or Method::Auto.");
    }
    if (options.activity != ActivityModel::Ideal && options.activity != ActivityModel::Davies &&
        options.activity != ActivityModel::DebyeHuckel && options.activity != ActivityModel::Pitzer) {
        throw std::invalid_argument("Unknown activity model " + std::to_string(static_cast<int>(options.activity)) +
                                    "; use ActivityModel::Ideal, Davies, DebyeHuckel or Pitzer.");
    }
    if (options.method == Method::Specified && options.activity != ActivityModel::Ideal) {
        throw std::invalid_argument("Method::Specified solves with ideal activities only; use Method::Robust or "
                                    "Method::Auto with a non-ideal activity model, or ActivityModel::Ideal.");
    }
    if (!(options.tolerance > 0.0) || !std::isfinite(options.tolerance)) {
        throw std::invalid_argument("SolveOptions::tolerance is " + std::to_string(options.tolerance) +
                                    "; it must be a positive number, for example 1e-10.");
    }
}

/// The result of the method `options` names, on input already checked and processed.
Result solved(const ProcessedInput& processed, const SpeciesModel& model, const ReactionIndex& index,
              const SolveOptions& options) {
    if (options.method == Method::Specified) return judged(specifiedResult(processed, model, options.tolerance));
    // Pitzer has a species set of its own, and so a speciation of its own.
    if (options.activity == ActivityModel::Pitzer) return judged(pitzerResult(processed, options));
    // The specified solver knows ideal activities only: Auto goes straight to the robust one.
    if (options.method == Method::Robust || options.activity != ActivityModel::Ideal)
        return judged(robustResult(processed, model, index, options));
    try {
        Result specified = judged(specifiedResult(processed, model, options.tolerance));
        if (specified.diagnostics.converged) return specified;
    } catch (const std::overflow_error&) {
        // The forward-difference Jacobian grew too large for the LU: a failure of that solver,
        // not of the input, so the robust one takes over.
    }
    Result robust = judged(robustResult(processed, model, index, options));
    robust.diagnostics.fellBack = true;
    return robust;
}

}  // namespace

Result speciateWith(const Input& input, const SpeciesModel& model, const ReactionIndex& index,
                    const SolveOptions& options) {
    return speciateWith(input, Constraints{}, model, index, options);
}

Result speciateWith(const Input& input, const Constraints& constraints, const SpeciesModel& model,
                    const ReactionIndex& index, const SolveOptions& options) {
    checkOptions(options);
    ConstraintPlan::refuseInvalid(constraints, options);
    // The conditions and amounts first, so that nothing out of range reaches the density engine;
    // the normalisation's own errors (unknown names, units, repeated basis) follow as `run` throws
    // them; the dissolved amounts need the density and the conversion, so they come last.
    refuseConditionsOutOfRange(input);
    ProcessedInput processed = processInput(input, model);
    refuseAmountsOutOfRange(processed, model.elementTable());
    Result result;
    if (ConstraintPlan::imposes(constraints)) {
        const ConstraintPlan plan(constraints, processed, model.elementTable());
        // Pitzer has a species set of its own, and so a speciation of its own.
        result = judged(options.activity == ActivityModel::Pitzer ? pitzerResult(processed, options, &plan)
                                                                   : robustResult(processed, model, index, options, &plan));
    } else {
        result = solved(processed, model, index, options);
    }
    // Under Pitzer the minerals come with its own data, already in the result.
    if (options.activity != ActivityModel::Pitzer)
        result.minerals =
            MineralSet::embedded().saturation(result, processed.input.temperature, processed.input.pressure);
    return result;
}

}  // namespace Brinecast
}  // namespace korvane
