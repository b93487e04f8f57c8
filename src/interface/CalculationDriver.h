#pragma once

#include "tools/NewtonEnding.h"
#include "tools/NewtonSettings.h"
#include "tools/ValueArray.h"

#include <korvane/Brinecast.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace korvane {
namespace Brinecast {

class BasisReactionSet;
class ChargeBalanceEquationMaker;
class SpeciesModel;
struct ProcessedInput;

/// Absolute Jacobian step and acceptable residual norm handed to the Newton solver.
struct SolverScales {
    double jacobianScale;  ///< mol/kgw
    double residualBound;  ///< mol/kgw (residual 1-norm)
};

/// What the solver left behind; `run` itself ignores it.
struct SolverReport {
    std::uint64_t iterations = 0;  ///< Newton iterations done
    double residualNorm = 0.0;     ///< 1-norm of the last residual measured
    double residualBound = 0.0;    ///< the bound that made a point acceptable
    tools::NewtonEnding ending = tools::NewtonEnding::Converged;  ///< how the iteration ended
};

/// The objects of one calculation, held apart from the species model so that calculations on
/// many threads can share one model: what `run` keeps in the model's working fields.
struct Speciation {
    std::vector<std::string> basisNames;  ///< "H2O", "H+", then the analysis' basis species
    ValueArray totals;                    ///< mol/kgw per basis name
    std::unique_ptr<BasisReactionSet> basisReactionSet;
    std::unique_ptr<ChargeBalanceEquationMaker> equationMaker;
    /// Moles of water per kg of water, then the solved free molality (mol/kgw) of basis names 1..N-1.
    ValueArray solution;

    Speciation();
    Speciation(Speciation&&) noexcept;
    Speciation& operator=(Speciation&&) noexcept;
    ~Speciation();
};

/// Species of one basis component with their molalities (mol/kgw), largest first.
struct SpeciesGroup {
    std::string basisName;
    std::vector<NameValue> species;
};

/// Starting free molalities (mol/kgw) for basis names 1..N-1: 0.01 for "H+", and for every
/// other basis the smaller of 0.01 and its total.
ValueArray initialGuess(const ValueArray& totals, std::size_t basisCount);

/// Scales from the starting point and the totals of basis names 1..N-1.
SolverScales solverScales(const ValueArray& guess, const ValueArray& totals, std::size_t basisCount);

/// The starting point and scales of a calculation prepared in a model.
struct PreparedSpeciation {
    ValueArray guess;  ///< free molalities (mol/kgw) of basis names 1..N-1
    SolverScales scales;
};

/// Everything before the solver: processes `input`, stores basis names, basis reaction set and
/// equation maker in `model` (replacing what it held), and returns the start and the scales.
PreparedSpeciation prepareSpeciation(const Input& input, SpeciesModel& model);

/// The same after input processing, into `speciation`; `model` is only read.
PreparedSpeciation prepareSpeciation(const ProcessedInput& processed, const SpeciesModel& model,
                                     Speciation& speciation);

/// The Newton settings of `run`: 1000 trials, step and residual tolerances 1e-18, 5 stale
/// iterations, relative step limit 0.5, and the two scales.
tools::NewtonSettings runSolverSettings(const SolverScales& scales);

/// Stores the solved unknowns `x` in the model's solution, behind the moles of water per kg.
void storeSolution(SpeciesModel& model, const ValueArray& x);

/// `solution` becomes `waterAmount` (mol per kg of water) followed by the first basisCount - 1
/// entries of `x`.
void storeSolution(ValueArray& solution, std::size_t basisCount, double waterAmount, const ValueArray& x);

/// The calculation up to the solution: prepareSpeciation, the Newton solver with the fixed
/// settings of `run`, storeSolution. Does not judge convergence; only exceptions stop it.
SolverReport solveSpeciation(const Input& input, SpeciesModel& model);

/// The same steps on an input processed against `model` (only read), into `speciation`: the
/// point where the iteration ended becomes the solution, and the trial limit is reported in
/// `ending` instead of thrown. With `stopOnNaN` the iteration ends as soon as the residual norm
/// is NaN, which it never leaves.
SolverReport solveSpecified(const ProcessedInput& processed, const SpeciesModel& model, Speciation& speciation,
                            bool stopOnNaN);

/// The solved species per basis component 2..N-1, in basis order; a species counts in every
/// group whose component it contains (|coefficient| > 1e-8).
std::vector<SpeciesGroup> groupSpecies(const SpeciesModel& model);

/// The same grouping from its parts: species names and molalities (mol/kgw) in species order,
/// and the coefficients A(j, k) at k * basisNames.size() + j.
std::vector<SpeciesGroup> groupSpecies(const std::vector<std::string>& basisNames,
                                       const std::vector<const std::string*>& speciesNames,
                                       const std::vector<double>& coefficients, const double* molalities);

/// pH and grouped molalities of the solution held by `model`.
Output assembleOutput(const SpeciesModel& model);
/// pH and grouped molalities of the solution held by `speciation`.
Output assembleOutput(const Speciation& speciation);
/// The groups concatenated in order, in mol/kgw, and pH = -log10 of the free "H+" molality.
Output assembleOutput(std::vector<SpeciesGroup> groups, double hydrogenMolality);
/// The same from the parts of groupSpecies, without building the groups. `order`, when given,
/// receives the species number of each entry of the output.
Output assembleOutput(const std::vector<std::string>& basisNames, const std::vector<const std::string*>& speciesNames,
                      const std::vector<double>& coefficients, const double* molalities, double hydrogenMolality,
                      std::vector<std::uint32_t>* order = nullptr);

/// Diagnostic text of the solution held by `model`: "pH=..." then every group with its species.
std::string solutionReport(const SpeciesModel& model);

}  // namespace Brinecast
}  // namespace korvane
