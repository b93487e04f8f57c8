#pragma once

#include "brinecast/calculation/ActivityChoice.h"
#include "brinecast/calculation/AnalysisResult.h"

#include <korvane/Brinecast.h>

#include <optional>
#include <string>
#include <vector>

namespace korvane::Brinecast::cli {

/// Runs the library on analyses and checks what it returns. Many analyses may be calculated at
/// once, on several threads; loading the engine first (`loadEngine`) keeps a missing engine from
/// being retried by every per-litre analysis.
class Calculator {
public:
    /// Above this share of the alkalinity (in equivalents), a charge imbalance makes the pH by
    /// charge balance untrustworthy: the carbonate system takes it up, turning that share of
    /// bicarbonate into CO2 (or back), which moves the pH by at least log10(1.25), 0.1 unit.
    static constexpr double kImbalanceShareOfAlkalinity = 0.25;

    /// `engineDirectory` holds the engine library (kvpvt64.dll); `balanceWith` names the element
    /// or ion that cancels each analysis' charge imbalance before the calculation, if any (at a
    /// measured pH: that closes it in the calculation, unless the analysis names its own);
    /// `method` is the library's solver (Auto: the specified one, the robust one when that fails)
    /// and `activity` its activity model, fixed or chosen per analysis; `macInnes` the Pitzer
    /// model's single-ion convention.
    Calculator(std::string engineDirectory, std::optional<std::string> balanceWith,
               Method method = Method::Robust, ActivityChoice activity = ActivityModel::Ideal, bool macInnes = true);

    /// True when some analysis' density is for the engine to compute.
    static bool needsEngine(const std::vector<AnalysisResult>& results);
    /// Loads the engine library once for the process; false when it cannot be loaded, and then
    /// analyses that need it must be calculated one after another.
    bool loadEngine() const;

    /// Adds the balancing ion, takes the charge balance, settles the density, runs the library
    /// and checks its result. A result already marked invalid is left as it is.
    void calculate(AnalysisResult& result) const;

    /// The library's input for an analysis.
    Input input(const Analysis& analysis, double densityGcm3) const;

    /// The library's input for an analysis as `calculate` hands it over (balancing ion added,
    /// density given or from the engine); nothing, with `result` marked invalid or failed, when
    /// the analysis cannot be prepared.
    std::optional<Input> prepared(AnalysisResult& result) const;

    const Speciator& speciator() const { return speciator_; }

    /// The solver, with the fixed activity model (Debye–Hückel under auto, until `decide`).
    const SolveOptions& solveOptions() const { return solveOptions_; }
    const ActivityChoice& activityChoice() const { return activity_; }
    /// The activity model for a prepared analysis and its input: with auto, Pitzer when its data
    /// cover every component the calculation will carry (a measured alkalinity brings carbon).
    ActivityChoice::Decision decide(const AnalysisResult& result, const Input& in) const;
    /// The solve options with the decided model.
    SolveOptions solveOptions(const ActivityChoice::Decision& decision) const;

    /// The measured pH, alkalinity (eq/kgw) and balancing ion of an analysis already prepared.
    static Constraints constraints(const AnalysisResult& result);

    /// What a user can do about a message the library threw.
    static std::string hintFor(const std::string& message);

private:
    void prepare(AnalysisResult& result) const;
    /// Takes the library's result into the program's, checking its balances.
    void record(AnalysisResult& result, const Input& in, const Result& libraryResult,
                ActivityChoice::Decision decision) const;
    /// Warns when the pH follows from a charge balance whose error rivals the alkalinity.
    void judgeImbalance(AnalysisResult& result) const;
    /// NaN, with the result marked failed, when the engine cannot give it.
    double engineDensity(AnalysisResult& result) const;

    std::string engineDirectory_;
    std::optional<std::string> balanceWith_;
    SolveOptions solveOptions_;
    ActivityChoice activity_;
    Speciator speciator_;  ///< the reaction data parsed once for every analysis and thread
};

}  // namespace korvane::Brinecast::cli
