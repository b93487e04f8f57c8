#include "interface/CalculationDriver.h"

#include "database/SpeciesModel.h"
#include "engine/ProcessedInput.h"
#include "solver/BasisReactionSet.h"
#include "solver/ChargeBalanceEquationMaker.h"
#include "tools/NewtonRaphsonEstimatedJacobian.h"

#include <korvane/KorvaneError.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <sstream>
#include <utility>

namespace korvane {
namespace Brinecast {

namespace {

constexpr double largestGuess = 0.01;           // mol/kgw
constexpr double scaleFactor = 1e-14;
constexpr double smallestScale = 1e-15;
constexpr std::uint64_t trialLimit = 1000;
constexpr double stepTolerance = 1e-18;         // sum of |dx|, mol/kgw
constexpr std::uint64_t staleLimit = 5;
constexpr double residualTolerance = 1e-18;     // residual 1-norm, mol/kgw
constexpr double maxRelativeStep = 0.5;
constexpr double groupCoefficientThreshold = 1e-8;

double atLeastSmallestScale(double value) { return value * scaleFactor < smallestScale ? smallestScale : value * scaleFactor; }

/// Descending molality; a NaN sorts after every number, so the order stays strict and weak.
bool largerMolality(double a, double b) {
    if (std::isnan(a)) return false;
    if (std::isnan(b)) return true;
    return a > b;
}

}  // namespace

ValueArray initialGuess(const ValueArray& totals, std::size_t basisCount) {
    ValueArray x(basisCount - 1);
    x[0] = largestGuess;  // "H+"
    // Written as "guess > total" so that a total that is not a number starts at 0.01.
    for (std::size_t i = 2; i < basisCount; ++i) x[i - 1] = largestGuess > totals[i] ? totals[i] : largestGuess;
    return x;
}

SolverScales solverScales(const ValueArray& guess, const ValueArray& totals, std::size_t basisCount) {
    // The largest starting molality leaves out "H+" and the first basis after it, on purpose.
    double largest = 0.0;
    for (std::size_t i = 2; i < guess.size(); ++i) largest = std::max(largest, guess[i]);
    double dissolved = 0.0;
    for (std::size_t i = 1; i < basisCount; ++i) dissolved += totals[i];
    return {atLeastSmallestScale(largest), atLeastSmallestScale(dissolved)};
}

Speciation::Speciation() = default;
Speciation::Speciation(Speciation&&) noexcept = default;
Speciation& Speciation::operator=(Speciation&&) noexcept = default;
Speciation::~Speciation() = default;

PreparedSpeciation prepareSpeciation(const ProcessedInput& processed, const SpeciesModel& model,
                                     Speciation& speciation) {
    speciation.basisNames = processed.basisNames;
    speciation.totals = processed.totals;
    const double temperatureK = processed.input.temperature;
    const std::size_t basisCount = speciation.basisNames.size();
    speciation.basisReactionSet =
        std::make_unique<BasisReactionSet>(model.reactions, speciation.basisNames, temperatureK);
    speciation.equationMaker = std::make_unique<ChargeBalanceEquationMaker>(
        *speciation.basisReactionSet, speciation.basisNames, speciation.totals, model);
    ValueArray guess = initialGuess(speciation.totals, basisCount);
    const SolverScales scales = solverScales(guess, speciation.totals, basisCount);
    return {std::move(guess), scales};
}

PreparedSpeciation prepareSpeciation(const Input& input, SpeciesModel& model) {
    Speciation speciation;
    PreparedSpeciation prepared = prepareSpeciation(processInput(input, model), model, speciation);
    model.basisNames = std::move(speciation.basisNames);
    model.basisReactionSet = std::move(speciation.basisReactionSet);
    model.equationMaker = std::move(speciation.equationMaker);
    return prepared;
}

void storeSolution(ValueArray& solution, std::size_t basisCount, double waterAmount, const ValueArray& x) {
    if (solution.size() != basisCount) solution = ValueArray(basisCount);
    solution[0] = waterAmount;  // mol of water per kg of water
    for (std::size_t k = 0; k + 1 < basisCount; ++k) solution[k + 1] = x[k];
}

void storeSolution(SpeciesModel& model, const ValueArray& x) {
    storeSolution(model.solution, model.basisNames.size(), model.equationMaker->totals()[0], x);
}

tools::NewtonSettings runSolverSettings(const SolverScales& scales) {
    tools::NewtonSettings settings;
    settings.trials = trialLimit;
    settings.stepTolerance = stepTolerance;
    settings.staleLimit = staleLimit;
    settings.residualBound = scales.residualBound;
    settings.residualTolerance = residualTolerance;
    settings.maxRelativeStep = maxRelativeStep;
    settings.jacobianScale = scales.jacobianScale;
    return settings;
}

SolverReport solveSpeciation(const Input& input, SpeciesModel& model) {
    PreparedSpeciation prepared = prepareSpeciation(input, model);
    const ChargeBalanceEquationMaker& equations = *model.equationMaker;
    const tools::ResidualFunction residuals = [&equations](const ValueArray& unknowns, ValueArray& out) {
        equations.evaluate(unknowns, out);
    };
    const tools::NewtonSettings s = runSolverSettings(prepared.scales);
    SolverReport report;
    report.residualBound = s.residualBound;
    std::uint64_t trials = s.trials;
    tools::NewtonRaphsonEstimatedJacobian solver;
    solver.solve(residuals, trials, prepared.guess, s.stepTolerance, s.staleLimit, s.residualBound,
                 s.residualTolerance, &report.residualNorm, s.maxRelativeStep, s.jacobianScale);
    report.iterations = trials;
    storeSolution(model, prepared.guess);
    return report;
}

SolverReport solveSpecified(const ProcessedInput& processed, const SpeciesModel& model, Speciation& speciation,
                            bool stopOnNaN) {
    PreparedSpeciation prepared = prepareSpeciation(processed, model, speciation);
    const ChargeBalanceEquationMaker& equations = *speciation.equationMaker;
    const tools::ResidualFunction residuals = [&equations](const ValueArray& unknowns, ValueArray& out) {
        equations.evaluate(unknowns, out);
    };
    tools::NewtonSettings settings = runSolverSettings(prepared.scales);
    settings.stopOnNaN = stopOnNaN;
    const tools::NewtonOutcome outcome = tools::NewtonRaphsonEstimatedJacobian().iterate(residuals, prepared.guess, settings);
    storeSolution(speciation.solution, speciation.basisNames.size(), equations.totals()[0], prepared.guess);
    return {outcome.iterations, outcome.residualNorm, settings.residualBound, outcome.ending};
}

namespace {

/// Species numbers of every group in report order: group g (basis name g + 2) holds
/// species[start[g] .. start[g + 1]).
struct GroupOrder {
    std::vector<std::uint32_t> start;
    std::vector<std::uint32_t> species;
};

GroupOrder groupOrder(std::size_t basisCount, std::size_t speciesCount, const std::vector<double>& coefficients,
                      const double* molalities) {
    const std::size_t groupCount = basisCount > 2 ? basisCount - 2 : 0;
    const auto belongs = [&](std::size_t j, std::size_t k) {
        return std::fabs(coefficients[k * basisCount + j]) > groupCoefficientThreshold;
    };
    GroupOrder order;
    order.start.assign(groupCount + 1, 0);
    for (std::size_t k = 0; k < speciesCount; ++k) {
        for (std::size_t j = 2; j < basisCount; ++j) order.start[j - 1] += belongs(j, k);
    }
    for (std::size_t g = 0; g < groupCount; ++g) order.start[g + 1] += order.start[g];
    order.species.resize(order.start[groupCount]);
    // Species by species, so that every group starts in species order.
    std::vector<std::uint32_t> next(order.start.begin(), order.start.end() - 1);
    for (std::size_t k = 0; k < speciesCount; ++k) {
        for (std::size_t j = 2; j < basisCount; ++j) {
            if (belongs(j, k)) order.species[next[j - 2]++] = static_cast<std::uint32_t>(k);
        }
    }
    // Sorting the numbers makes the same comparisons, and so the same order, as sorting the
    // named entries themselves, without moving a name.
    const auto larger = [molalities](std::uint32_t a, std::uint32_t b) {
        return largerMolality(molalities[a], molalities[b]);
    };
    for (std::size_t g = 0; g < groupCount; ++g)
        std::sort(order.species.begin() + order.start[g], order.species.begin() + order.start[g + 1], larger);
    return order;
}

}  // namespace

std::vector<SpeciesGroup> groupSpecies(const std::vector<std::string>& basisNames,
                                       const std::vector<const std::string*>& speciesNames,
                                       const std::vector<double>& coefficients, const double* molalities) {
    const GroupOrder order = groupOrder(basisNames.size(), speciesNames.size(), coefficients, molalities);
    std::vector<SpeciesGroup> groups(order.start.size() - 1);
    for (std::size_t g = 0; g < groups.size(); ++g) {
        groups[g].basisName = basisNames[g + 2];
        groups[g].species.reserve(order.start[g + 1] - order.start[g]);
        for (std::uint32_t i = order.start[g]; i < order.start[g + 1]; ++i) {
            const std::uint32_t k = order.species[i];
            groups[g].species.push_back({*speciesNames[k], molalities[k]});
        }
    }
    return groups;
}

Output assembleOutput(const std::vector<std::string>& basisNames, const std::vector<const std::string*>& speciesNames,
                      const std::vector<double>& coefficients, const double* molalities, double hydrogenMolality,
                      std::vector<std::uint32_t>* order) {
    GroupOrder groups = groupOrder(basisNames.size(), speciesNames.size(), coefficients, molalities);
    Output output;
    output.species.values.reserve(groups.species.size());
    for (std::uint32_t k : groups.species) output.species.values.push_back({*speciesNames[k], molalities[k]});
    output.species.unit = MolPerKgw;
    output.pH = -std::log10(hydrogenMolality);
    if (order) *order = std::move(groups.species);
    return output;
}

namespace {

std::vector<SpeciesGroup> groupSolvedSpecies(const std::vector<std::string>& basisNames, const BasisReactionSet& reactions,
                                             const ChargeBalanceEquationMaker& equations, const ValueArray& solution) {
    const ValueArray molalities = equations.speciesValues(solution);
    std::vector<const std::string*> names;
    names.reserve(reactions.speciesCount());
    for (const std::string& name : reactions.speciesNames()) names.push_back(&name);
    return groupSpecies(basisNames, names, reactions.coefficients(), molalities.data());
}

}  // namespace

std::vector<SpeciesGroup> groupSpecies(const SpeciesModel& model) {
    return groupSolvedSpecies(model.basisNames, *model.basisReactionSet, *model.equationMaker, model.solution);
}

Output assembleOutput(std::vector<SpeciesGroup> groups, double hydrogenMolality) {
    Output output;
    std::size_t entries = 0;
    for (const SpeciesGroup& group : groups) entries += group.species.size();
    output.species.values.reserve(entries);
    for (SpeciesGroup& group : groups) {
        for (NameValue& entry : group.species) output.species.values.push_back(std::move(entry));
    }
    output.species.unit = MolPerKgw;
    output.pH = -std::log10(hydrogenMolality);
    return output;
}

Output assembleOutput(const SpeciesModel& model) { return assembleOutput(groupSpecies(model), model.solution[1]); }

Output assembleOutput(const Speciation& speciation) {
    return assembleOutput(groupSolvedSpecies(speciation.basisNames, *speciation.basisReactionSet,
                                             *speciation.equationMaker, speciation.solution),
                          speciation.solution[1]);
}

std::string solutionReport(const SpeciesModel& model) {
    const std::vector<SpeciesGroup> groups = groupSpecies(model);
    std::ostringstream text;
    text << "pH=" << -std::log10(model.solution[1]) << "\n";
    for (const SpeciesGroup& group : groups) {
        text << group.basisName << ":\n";
        for (const NameValue& entry : group.species) text << "   " << entry.name << " " << entry.value << "\n";
    }
    return text.str();
}

Output run(Input input) {
    SpeciesModel model;
    solveSpeciation(input, model);
    return assembleOutput(model);
}

double getPH(Input input) { return run(std::move(input)).pH; }

}  // namespace Brinecast
}  // namespace korvane
