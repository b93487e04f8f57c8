#include "interface/CalculationDriver.h"

#include "database/SpeciesModel.h"
#include "engine/ProcessedInput.h"
#include "solver/BasisReactionSet.h"
#include "solver/ChargeBalanceEquationMaker.h"
#include "tools/NewtonRaphsonEstimatedJacobian.h"

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
bool largerMolality(const NameValue& a, const NameValue& b) {
    if (std::isnan(a.value)) return false;
    if (std::isnan(b.value)) return true;
    return a.value > b.value;
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

SolverReport solveSpeciation(const Input& input, SpeciesModel& model) {
    ValueArray totals;
    double temperatureK = 0.0;
    {
        ProcessedInput processed = processInput(input, model);
        model.basisNames = processed.basisNames;
        totals = processed.totals;
        temperatureK = processed.input.temperature;
    }
    const std::size_t basisCount = model.basisNames.size();
    model.basisReactionSet = std::make_unique<BasisReactionSet>(model.reactions, model.basisNames, temperatureK);
    model.equationMaker =
        std::make_unique<ChargeBalanceEquationMaker>(*model.basisReactionSet, model.basisNames, totals, model);

    ValueArray x = initialGuess(totals, basisCount);
    const SolverScales scales = solverScales(x, totals, basisCount);
    const ChargeBalanceEquationMaker& equations = *model.equationMaker;
    const tools::ResidualFunction residuals = [&equations](const ValueArray& unknowns, ValueArray& out) {
        equations.evaluate(unknowns, out);
    };

    SolverReport report;
    report.residualBound = scales.residualBound;
    std::uint64_t trials = trialLimit;
    tools::NewtonRaphsonEstimatedJacobian solver;
    solver.solve(residuals, trials, x, stepTolerance, staleLimit, scales.residualBound, residualTolerance,
                 &report.residualNorm, maxRelativeStep, scales.jacobianScale);
    report.iterations = trials;

    if (model.solution.size() != basisCount) model.solution = ValueArray(basisCount);
    model.solution[0] = totals[0];
    for (std::size_t k = 0; k + 1 < basisCount; ++k) model.solution[k + 1] = x[k];
    return report;
}

std::vector<SpeciesGroup> groupSpecies(const SpeciesModel& model) {
    const BasisReactionSet& reactions = *model.basisReactionSet;
    const ValueArray molalities = model.equationMaker->speciesValues(model.solution);
    const std::vector<std::string>& names = reactions.speciesNames();

    std::vector<SpeciesGroup> groups;
    for (std::size_t j = 2; j < model.basisNames.size(); ++j) {
        SpeciesGroup group{model.basisNames[j], {}};
        for (std::size_t k = 0; k < names.size(); ++k) {
            if (std::fabs(reactions.coefficient(j, k)) > groupCoefficientThreshold)
                group.species.push_back({names[k], molalities[k]});
        }
        std::sort(group.species.begin(), group.species.end(), largerMolality);
        groups.push_back(std::move(group));
    }
    return groups;
}

Output assembleOutput(const SpeciesModel& model) {
    Output output;
    for (SpeciesGroup& group : groupSpecies(model)) {
        for (NameValue& entry : group.species) output.species.values.push_back(std::move(entry));
    }
    output.species.unit = MolPerKgw;
    output.pH = -std::log10(model.solution[1]);
    return output;
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
