#pragma once
/// Speciation with a choice of solver and a report of how well it converged, and a Speciator that
/// parses the reaction data once and then answers any number of analyses, from many threads.
/// `run` and `getPH` are unchanged beside it.

#include <korvane/ActivityModel.h>
#include <korvane/Brinecast.h>
#include <korvane/ConstraintOutcome.h>
#include <korvane/Constraints.h>
#include <korvane/Export.h>
#include <korvane/MineralSaturation.h>

#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <vector>

namespace korvane {
namespace Brinecast {

/// The solver of a speciation.
enum class Method : std::int32_t {
    /// The calculation of `run`, bit for bit: Newton-Raphson on the molalities with a
    /// forward-difference Jacobian. It loses its digits above about 3 mol/kgw of salt and cannot
    /// start from a zero total.
    Specified = 0,
    /// The same equations solved in the logarithms of the free molalities with the exact
    /// Jacobian and a line search: converges from pure water to saturated brines, zero totals
    /// included (their species are reported as 0).
    Robust = 1,
    /// Specified, and Robust when Specified fails or its balances do not close: `run`'s bits
    /// whenever the specified solver converges, at about 50 times the cost of Robust.
    Auto = 2,
};

/// How a speciation is solved and judged.
struct SolveOptions {
    /// Robust by default: it converges wherever Specified does, and beyond, in a fraction of the
    /// time. Auto or Specified for a host that needs `run`'s bits.
    Method method = Method::Robust;
    /// Relative tolerance of convergence: every mass balance against its total, the charge
    /// balance against the sum of |charge| x molality and, for Robust, the last correction of
    /// every free molality. Below about 1e-14 double precision cannot meet it.
    double tolerance = 1e-10;
    /// Most Newton steps of one log-space solve of the Robust solver; a non-ideal activity model
    /// runs one such solve per update of its activity coefficients. The Specified solver keeps its
    /// own limit of 1000.
    std::uint64_t iterationLimit = 200;
    /// How activities follow from molalities. Anything but Ideal needs the Robust solver (Auto
    /// then runs it directly); Specified is defined for ideal activities only.
    ActivityModel activity = ActivityModel::Ideal;
};

/// How a speciation ended and how well its result closes the balances.
struct Diagnostics {
    /// The balances close to the tolerance and every number of the result (pH, molalities,
    /// balances) is finite. For Specified also: its residual norm is within the bound its own
    /// solver accepts, and it neither ran out of trials nor met a NaN.
    bool converged = false;
    Method method = Method::Specified;  ///< the solver whose result this is: never Auto
    bool fellBack = false;              ///< Auto tried Specified first and reports Robust
    std::uint64_t iterations = 0;       ///< Newton iterations of that solver, over every activity update
    /// Sum of |residual| of the mass balances (mol/kgw) and the charge balance (eq/kgw); for
    /// Specified the norm its solver ended with, for Robust recomputed at its result.
    double residualNorm = 0.0;
    /// Largest |sum of a component over its species - its total| / its total, over the components.
    double massBalanceError = 0.0;
    /// |sum of charge x molality| / sum of |charge| x molality over all species.
    double chargeImbalance = 0.0;
};

/// A speciation and its diagnostics.
struct Result {
    Output output;  ///< pH and species molalities (mol/kgw), grouped as `run` groups them
    Diagnostics diagnostics;
    ActivityModel activity = ActivityModel::Ideal;  ///< the model the result was computed with
    /// 0.5·Σ z²·m over every solute species, H+ and OH- included (mol/kgw); computed for every model.
    double ionicStrength = 0.0;
    double logWaterActivity = 0.0;  ///< log10 of the water activity; 0 for Ideal
    /// log10 γ of each entry of `output.species`, in the same order; all 0 for Ideal. With the
    /// pH (−log10 of the activity of H+) and the water activity they give any ion activity product.
    std::vector<double> logActivityCoefficients;
    /// Saturation of every scale mineral whose components the analysis contains, at its T and P;
    /// a mineral that needs an absent component is not listed.
    std::vector<MineralSaturation> minerals;
    /// Σ alk_k·m_k over every species (eq/kgw), alk_k from its basis species as Constraints
    /// describes; computed for every result, imposed or not.
    double alkalinity = 0.0;
    ConstraintOutcome constraints;  ///< what the constraints imposed and derived
};

/// One analysis of a batch: its result, or what its calculation threw.
struct BatchItem {
    Result result;                 ///< meaningful only when `ok()`
    std::exception_ptr error;      ///< the exception `speciate` threw for this input, if any
    std::string errorMessage;      ///< that exception's what(), empty when none
    bool ok() const { return error == nullptr; }
};

/// Speciation of one analysis. Refuses with std::invalid_argument, naming the value and the range
/// accepted, what the reaction data cannot describe: a temperature outside 273.15-473.15 K or a
/// pressure above 1000 atm (0 or less still means 298.15 K and 101325 Pa; NaN is refused), a
/// density that is not finite, negative or non-finite amounts, dissolved elements as heavy as the
/// solution, and more than 30 mol/kgw of dissolved matter. Those checks of the conditions and
/// amounts come first; input errors of `run` (unknown element, unset unit, repeated basis, engine
/// failures) follow, thrown exactly as `run` throws them whatever the method; the dissolved
/// amounts, which need the density, are checked last. Parses the reaction data on every call, as
/// `run` does; a Speciator parses it once.
KORVANE_API Result speciate(Input input, const SolveOptions& options = {});
/// The same with measured quantities imposed; refuses what Constraints lists, and asks for a
/// method that can impose them: Method::Specified solves the charge balance only (Auto then runs
/// Robust directly). With a fixed pH and no closing component, `diagnostics.converged` means the
/// mass balances and the imposed rows close; the charge imbalance is only reported.
KORVANE_API Result speciate(Input input, const Constraints& constraints, const SolveOptions& options = {});

/// Speciation of many analyses with one parsed copy of the reaction data. Immutable once built:
/// `speciate` may be called from any number of threads at once, and copies share the data.
class KORVANE_API Speciator {
public:
    /// Parses the embedded reaction data and prepares it for many calculations.
    Speciator();
    Speciator(const Speciator& other);
    Speciator(Speciator&& other) noexcept;
    Speciator& operator=(const Speciator& other);
    Speciator& operator=(Speciator&& other) noexcept;
    ~Speciator();

    /// As the free `speciate`, without parsing the reaction data again. The reactions a basis
    /// list picks are kept per thread for the next analyses on the same list (a bounded number of
    /// lists), so a batch of similar analyses picks them once.
    Result speciate(const Input& input, const SolveOptions& options = {}) const;
    /// As the free `speciate` with constraints.
    Result speciate(const Input& input, const Constraints& constraints, const SolveOptions& options = {}) const;

    /// Every input's result or error, in input order, computed on `threads` threads (0: one per
    /// core). The threads live only inside this call. An analysis that needs the density engine
    /// loads it before any thread starts.
    std::vector<BatchItem> speciateBatch(const std::vector<Input>& inputs, const SolveOptions& options = {},
                                         unsigned threads = 0) const;
    /// The same with constraints[i] imposed on inputs[i]. Throws std::invalid_argument, before any
    /// calculation, when the two lists differ in length.
    std::vector<BatchItem> speciateBatch(const std::vector<Input>& inputs, const std::vector<Constraints>& constraints,
                                         const SolveOptions& options = {}, unsigned threads = 0) const;

private:
    class Data;
    std::shared_ptr<const Data> data_;
};

}  // namespace Brinecast
}  // namespace korvane
