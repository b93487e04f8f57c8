#include "interface/PitzerMethod.h"

#include "activity/pitzer/PitzerDatabase.h"
#include "activity/pitzer/PitzerSpeciation.h"
#include "database/SpeciesModel.h"
#include "engine/ProcessedInput.h"
#include "interface/BasisAlkalinity.h"
#include "interface/CalculationDriver.h"
#include "interface/ConstraintPlan.h"
#include "interface/PitzerGaps.h"
#include "solver/BalanceClosure.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace korvane {
namespace Brinecast {

namespace {

/// The Pitzer components of the analysis, or std::invalid_argument naming what Pitzer lacks;
/// `basisOfUnknown`, when given, receives the basis index of each unknown (H+ first).
std::vector<PitzerComponent> pitzerComponents(const ProcessedInput& processed, const PitzerDatabase& database,
                                              std::vector<std::size_t>* basisOfUnknown = nullptr) {
    std::vector<PitzerComponent> components;
    if (basisOfUnknown) basisOfUnknown->assign(1, 1);
    std::vector<std::string> present;
    for (std::size_t j = 2; j < processed.basisNames.size(); ++j) {
        const double total = processed.totals[j];  // mol/kgw
        if (!(total > 0.0)) continue;
        present.push_back(processed.basisNames[j]);
        const std::int32_t master = database.find(present.back());
        if (master < 0) continue;
        components.push_back({master, total});
        if (basisOfUnknown) basisOfUnknown->push_back(j);
    }
    const std::vector<std::string> gaps = pitzerGaps(present, database, processed.model.elementTable());
    if (!gaps.empty()) {
        std::string missing;
        for (const std::string& gap : gaps) missing += (missing.empty() ? "" : ", ") + gap;
        throw std::invalid_argument(
            "ActivityModel::Pitzer has no species or parameters for " + missing +
            " (it covers Na, K, Mg, Ca, Sr, Ba, Cl, Br, C, S(6), and Fe(+2) with Cl, Br and S(6) only); "
            "leave them out of the analysis or use ActivityModel::DebyeHuckel.");
    }
    return components;
}

/// The output entries (grouped per component as `run` groups them) and their log10 γ.
void fillSpecies(const PitzerSolution& solution, const PitzerDatabase& database, Result& result) {
    std::vector<std::string> basisNames{"H2O", "H+"};
    for (std::size_t b = 1; b < solution.unknowns; ++b)
        basisNames.push_back(database.species()[static_cast<std::size_t>(solution.species[b])].name);
    std::vector<const std::string*> names;
    std::vector<double> coefficients;  // A(j, k) at k·basisCount + j, water column 0
    for (std::size_t s = 0; s < solution.species.size(); ++s) {
        names.push_back(&database.species()[static_cast<std::size_t>(solution.species[s])].name);
        coefficients.push_back(0.0);
        for (std::size_t b = 0; b < solution.unknowns; ++b) coefficients.push_back(solution.contents[s * solution.unknowns + b]);
    }
    std::vector<std::uint32_t> order;
    result.output = assembleOutput(basisNames, names, coefficients, solution.molalities.data(), solution.molalities[0],
                                   &order);
    result.output.pH = solution.pH;
    result.logActivityCoefficients.reserve(order.size());
    for (std::uint32_t k : order) result.logActivityCoefficients.push_back(solution.logGammas[k]);
}

/// How well the molalities close the balances of `totals` (mol/kgw, per basis of the analysis),
/// as the other models measure it.
void measureClosure(const PitzerSolution& solution, const ValueArray& totals,
                    const std::vector<std::size_t>& basisOfUnknown, Diagnostics& diagnostics) {
    double chargeSum = 0.0, chargeScale = 0.0, residual = 0.0, worst = 0.0;
    const PitzerDatabase& database = PitzerDatabase::embedded();
    for (std::size_t s = 0; s < solution.species.size(); ++s) {
        const int z = database.species()[static_cast<std::size_t>(solution.species[s])].charge;
        chargeSum += z * solution.molalities[s];
        chargeScale += std::abs(z) * solution.molalities[s];
    }
    for (std::size_t b = 1; b < solution.unknowns; ++b) {
        double sum = 0.0;
        for (std::size_t s = 0; s < solution.species.size(); ++s)
            sum += solution.contents[s * solution.unknowns + b] * solution.molalities[s];
        const double total = totals[basisOfUnknown[b]];
        residual += std::fabs(sum - total);
        worst = std::max(worst, std::fabs(sum - total) / total);
    }
    diagnostics.residualNorm = residual + std::fabs(chargeSum);
    diagnostics.massBalanceError = worst;
    diagnostics.chargeImbalance = chargeScale > 0.0 ? std::fabs(chargeSum) / chargeScale : 0.0;
}

/// PHREEQC's alkalinity (eq/kgw): each species counts with the alkalinities of the master
/// species it is made of (CO3-2 2, H+ −1, the rest 0), so OH- and HCO3- count 1, CO2 0, MgCO3 2,
/// MgOH+ 1 and HSO4- −1; water carries none.
double alkalinityOf(const PitzerSolution& solution, const std::vector<double>& unknownAlkalinities) {
    double sum = 0.0;
    for (std::size_t s = 0; s < solution.species.size(); ++s) {
        double perUnit = 0.0;
        for (std::size_t b = 0; b < solution.unknowns; ++b)
            perUnit += solution.contents[s * solution.unknowns + b] * unknownAlkalinities[b];
        sum += perUnit * solution.molalities[s];
    }
    return sum;
}

/// `perBasis` (one value per basis name of the analysis) for the unknowns of the Pitzer set.
std::vector<double> perUnknown(const std::vector<double>& perBasis, const std::vector<std::size_t>& basisOfUnknown) {
    std::vector<double> values;
    for (std::size_t basis : basisOfUnknown) values.push_back(perBasis[basis]);
    return values;
}

std::size_t unknownOf(std::size_t basis, const std::vector<std::size_t>& basisOfUnknown) {
    const auto found = std::find(basisOfUnknown.begin(), basisOfUnknown.end(), basis);
    return found == basisOfUnknown.end() ? 0 : static_cast<std::size_t>(found - basisOfUnknown.begin());
}

/// The pH and rows of `plan` laid on `speciation`.
void imposePlan(const ConstraintPlan& plan, const std::vector<std::size_t>& basisOfUnknown,
                PitzerSpeciation& speciation) {
    speciation.fixPH(plan.pH());
    for (const ImposedRow& row : plan.rows())
        speciation.impose(perUnknown(row.basisWeights, basisOfUnknown), row.value,
                          unknownOf(row.freedBasis, basisOfUnknown));
}

/// Refuses what `plan` could not reach, as the other models do; otherwise puts the totals its
/// rows derived (mol/kgw) into `totals` and the constraints' part into `result`.
void reportPlan(const ConstraintPlan& plan, const PitzerSolution& solution,
                const std::vector<std::size_t>& basisOfUnknown, ValueArray& totals, Result& result) {
    if (!solution.converged) {
        const std::size_t unreachable =
            solution.unreachable < basisOfUnknown.size() ? basisOfUnknown[solution.unreachable] : ConstraintPlan::kNone;
        plan.refuseUnreachable(unreachable, result.alkalinity);
    }
    // The measured value itself, not its round trip through a logarithm.
    result.output.pH = plan.pH();
    for (const ImposedRow& row : plan.rows()) {
        const std::size_t b = unknownOf(row.freedBasis, basisOfUnknown);
        double total = 0.0;  // mol/kgw
        for (std::size_t s = 0; s < solution.species.size(); ++s)
            total += solution.contents[s * solution.unknowns + b] * solution.molalities[s];
        totals[row.freedBasis] = total;
    }
    plan.report(totals, result);
}

}  // namespace

PitzerLayout pitzerLayout(const ProcessedInput& processed) {
    const PitzerDatabase& database = PitzerDatabase::embedded();
    const std::vector<PitzerComponent> components = pitzerComponents(processed, database);
    // Without the MacInnes scale: the set then holds no Cl- that is there only for it.
    const PitzerSolution solution =
        PitzerSpeciation(database, components, processed.input.temperature, processed.input.pressure, false).layout();
    PitzerLayout layout;
    layout.basisNames = {"H2O", "H+"};
    layout.totals = {0.0, 0.0};
    for (const PitzerComponent& component : components) {
        layout.basisNames.push_back(database.species()[static_cast<std::size_t>(component.master)].name);
        layout.totals.push_back(component.total);
    }
    for (std::size_t s = 0; s < solution.species.size(); ++s) {
        const PitzerSpecies& species = database.species()[static_cast<std::size_t>(solution.species[s])];
        layout.speciesNames.push_back(species.name);
        layout.charges.push_back(species.charge);
        layout.logK.push_back(solution.logK[s]);
        layout.coefficients.push_back(species.waterCount);
        for (std::size_t b = 0; b < solution.unknowns; ++b)
            layout.coefficients.push_back(solution.contents[s * solution.unknowns + b]);
    }
    return layout;
}

Result pitzerResult(const ProcessedInput& processed, const SolveOptions& options, const ConstraintPlan* plan) {
    const PitzerDatabase& database = PitzerDatabase::embedded();
    std::vector<std::size_t> basisOfUnknown;
    const std::vector<PitzerComponent> components = pitzerComponents(processed, database, &basisOfUnknown);
    PitzerSpeciation speciation(database, components, processed.input.temperature, processed.input.pressure,
                                options.macInnes);
    if (plan) imposePlan(*plan, basisOfUnknown, speciation);
    const PitzerSolution solution = speciation.solve(options.tolerance, options.iterationLimit);
    Result result;
    result.activity = ActivityModel::Pitzer;
    fillSpecies(solution, database, result);
    result.ionicStrength = solution.ionicStrength;
    result.logWaterActivity = solution.logWaterActivity;
    result.minerals = solution.minerals;
    const std::vector<double> alkalinities = basisAlkalinities(processed.basisNames, processed.model.elementTable());
    result.alkalinity = alkalinityOf(solution, perUnknown(alkalinities, basisOfUnknown));
    ValueArray totals = processed.totals;
    if (plan) reportPlan(*plan, solution, basisOfUnknown, totals, result);
    Diagnostics& diagnostics = result.diagnostics;
    diagnostics.method = Method::Robust;
    diagnostics.iterations = solution.iterations;
    diagnostics.converged = solution.converged;
    measureClosure(solution, totals, basisOfUnknown, diagnostics);
    return result;
}

}  // namespace Brinecast
}  // namespace korvane
