#pragma once

#include "tools/NewtonSettings.h"
#include "tools/ValueArray.h"

#include <korvane/Brinecast.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace korvane {
namespace Brinecast {

class SpeciesModel;

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

/// The Newton settings of `run`: 1000 trials, step and residual tolerances 1e-18, 5 stale
/// iterations, relative step limit 0.5, and the two scales.
tools::NewtonSettings runSolverSettings(const SolverScales& scales);

/// Stores the solved unknowns `x` in the model's solution, behind the moles of water per kg.
void storeSolution(SpeciesModel& model, const ValueArray& x);

/// The calculation up to the solution: prepareSpeciation, the Newton solver with the fixed
/// settings of `run`, storeSolution. Does not judge convergence; only exceptions stop it.
SolverReport solveSpeciation(const Input& input, SpeciesModel& model);

/// The solved species per basis component 2..N-1, in basis order; a species counts in every
/// group whose component it contains (|coefficient| > 1e-8).
std::vector<SpeciesGroup> groupSpecies(const SpeciesModel& model);

/// pH and grouped molalities of the solution held by `model`.
Output assembleOutput(const SpeciesModel& model);

/// Diagnostic text of the solution held by `model`: "pH=..." then every group with its species.
std::string solutionReport(const SpeciesModel& model);

}  // namespace Brinecast
}  // namespace korvane
