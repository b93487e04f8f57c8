#pragma once

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

/// The calculation up to the solution: processes `input`, builds the basis reaction set and the
/// equations, solves them and leaves basis names, reaction set, equation maker and solution in
/// `model` (replacing what it held). Does not judge convergence; only exceptions stop it.
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
