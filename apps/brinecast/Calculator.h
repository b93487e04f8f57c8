#pragma once

#include "brinecast/AnalysisResult.h"

#include <korvane/Brinecast.h>

#include <optional>
#include <string>

namespace korvane::Brinecast::cli {

/// Runs the library on analyses and checks what it returns. Work is split in two so that
/// many analyses can be solved at once: `prepare` may load the engine library and must run on
/// one thread; `calculate` touches nothing shared and may run on many.
class Calculator {
public:
    /// `engineDirectory` holds the engine library (kvpvt64.dll); `balanceWith` names the element
    /// or ion that cancels each analysis' charge imbalance before the calculation, if any;
    /// `method` is the library's solver (Auto: the specified one, the robust one when that fails).
    Calculator(std::string engineDirectory, std::optional<std::string> balanceWith,
               Method method = Method::Auto);

    /// Adds the balancing ion, takes the charge balance and settles the density.
    AnalysisResult prepare(const Analysis& analysis) const;
    /// Calculates a prepared result in place, unless preparing it failed.
    void calculate(AnalysisResult& result) const;

    /// The library's input for an analysis.
    Input input(const Analysis& analysis, double densityGcm3) const;

    /// What a user can do about a message the library threw.
    static std::string hintFor(const std::string& message);

private:
    /// NaN, with the result marked failed, when the engine cannot give it.
    double engineDensity(AnalysisResult& result) const;

    std::string engineDirectory_;
    std::optional<std::string> balanceWith_;
    SolveOptions solveOptions_;
    Speciator speciator_;  ///< the reaction data parsed once for every analysis and thread
};

}  // namespace korvane::Brinecast::cli
