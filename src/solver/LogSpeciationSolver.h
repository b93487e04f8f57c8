#pragma once

#include "solver/ImposedRow.h"
#include "solver/SpeciationSystem.h"
#include "tools/ValueArray.h"
#include "tools/ValueMatrix.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace korvane {
namespace Brinecast {

/// How a log-space solve ended.
struct LogSolverOutcome {
    bool converged = false;
    std::uint64_t iterations = 0;  ///< Newton steps taken
};

/// Solves the speciation equations in the natural logarithms u of the free basis molalities,
/// with the analytic Jacobian: ∂m_k/∂u_j = A(j, k)·m_k.
///
/// With charge conserved by every reaction, the charge balance is the proton balance
/// Σ A(H+, k)·m_k = −Σ z_j·T_j, and the equations are the gradient of the convex function
/// G(u) = Σ m_k(u) − Σ T_j·u_j. Its Hessian A·diag(m)·Aᵀ is symmetric positive definite, so the
/// Newton step (the same step as on the mass and charge balances themselves) always descends G,
/// and a backtracking line search on G converges from any start. Steps are capped in log space.
///
/// A component whose total is 0 leaves the unknowns: its free molality and every species that
/// contains it are 0. Convergence is judged relative to each total: every mass balance and the
/// charge balance (against the sum of |z|·m) close to the tolerance, and the next Newton step
/// would change no free molality by more than that fraction.
///
/// A measured pH holds "H+" (`fixHydrogen`): the mass balances alone remain, still the gradient of
/// G over the other unknowns. A row such as the charge balance or the alkalinity may then take the
/// place of one component's mass balance (`impose`), whose total becomes an unknown; every such row
/// depends on the free molalities only through the proton balance, so the bordered Newton system
/// reduces to a Schur complement of at most two rows, solved with the same Cholesky factors.
///
/// Built per calculation; holds its own working arrays, so it serves one thread.
class LogSpeciationSolver {
public:
    /// `totals`: one amount (mol/kgw) per basis name, in basis order (entries 0 and 1, water and
    /// "H+", are not balances). `waterLogActivity`: log10 of the water activity the mass action
    /// uses. Throws std::logic_error when a picked reaction does not conserve charge.
    LogSpeciationSolver(const SpeciationSystem& system, const ValueArray& totals, double waterLogActivity);

    /// Iterates from a starting point drawn from the totals. A total that is negative or not a
    /// finite number cannot be met: nothing is iterated and every molality is NaN.
    LogSolverOutcome solve(double tolerance, std::uint64_t iterationLimit);

    /// Replaces the mass-action constants: log10 of each species' molality (mol/kgw) when every
    /// free molality is 1 mol/kgw, one per species of the system. An activity iteration folds the
    /// activity coefficients and the water activity into them.
    void setLogConstants(const std::vector<double>& logConstants);
    /// Iterates again from the last point, after new constants: near the answer already, it
    /// skips the rough balancing of a cold start. A freed total found out of reach is tried again.
    LogSolverOutcome resolve(double tolerance, std::uint64_t iterationLimit);

    /// Holds the free molality of "H+" at 10^logMolality mol/kgw: the measured pH replaces the
    /// charge balance, which is then only reported, unless a row imposes it. May be called again
    /// between solves (an activity iteration moves γ(H+)).
    void fixHydrogen(double logMolality);
    /// Replaces the mass balance of `row.freedBasis` with `row`; that component's total, from the
    /// totals given, becomes the starting guess of an unknown. Needs "H+" fixed first: the rows
    /// lean on the proton balance, which a free "H+" spends on the charge balance. Throws
    /// std::logic_error when the freed basis has no positive total or already carries a row.
    void impose(const ImposedRow& row);
    /// Writes the totals (mol/kgw) the imposed rows settled into `totals`, one per basis name.
    void derivedTotals(ValueArray& totals) const;
    /// The basis index of a freed total that would have had to fall to 0 or below, or rise past
    /// 30 mol/kgw, to meet its row, or SIZE_MAX. Unless the solve converged, no amount of that
    /// component meets the row.
    std::size_t unreachableBasis() const { return unreachable_; }

    /// Free molality (mol/kgw) of basis names 1..N−1 at the last point: the unknowns in the
    /// order of the speciation equations, 0 for a component with a zero total.
    ValueArray freeMolalities() const;
    /// Molality (mol/kgw) of every species of the system, in its order, at the last point.
    const std::vector<double>& molalities() const { return molalities_; }

private:
    /// One species that takes part: its place in the system and its terms on the unknowns.
    struct ActiveSpecies {
        std::size_t species;
        double constant;  ///< its molality (mol/kgw) when every free molality is 1 mol/kgw
        std::uint32_t firstTerm;
        std::uint32_t termCount;
    };
    /// One basis species in a species: the unknown, its coefficient, and, when the coefficient
    /// is a small whole number, where its power of the free molality lies in powers_: a table
    /// lookup is far cheaper than exp.
    struct Term {
        std::uint32_t unknown;
        std::uint32_t power;  ///< index into powers_, or kNoPower
        double coefficient;
    };
    static constexpr std::uint32_t kNoPower = UINT32_MAX;

    void selectUnknowns(const SpeciationSystem& system, const ValueArray& totals, double waterLogActivity);
    void startingPoint();
    /// Brings each component's balance near its total by scaling its free molality, and "H+"
    /// near its balance by its own Newton step: a cheap start for the coupled Newton steps.
    void balanceComponents();
    /// Molalities, balances, gradient and G at `u`; false when G is not finite.
    bool evaluate(const double* u);
    /// The Newton step at the current point into step_.
    void newtonStep();
    /// The Newton step over the components alone when "H+" is held: first the freed totals from
    /// the bordered system (a Schur complement of at most two rows), then the step of G at them.
    void reducedNewtonStep();
    /// The freed totals' Newton update, from the Cholesky factors of the scaled reduced Hessian
    /// and its "H+" column; moves the targets and G accordingly.
    void updateFreedTotals(const tools::ValueMatrix& factors);
    struct Row;
    /// Moves the total `row` frees by `change` (mol/kgw), within a factor of 100, 0 and
    /// 30 mol/kgw, and G and the gradient with it; marks the total out of reach at those bounds.
    void moveFreedTotal(const Row& row, double change);
    /// Whether every imposed row closes to the tolerance, against the sum of |c_k|·m_k, and the
    /// total it frees is met as finely as the row can set it.
    bool rowsClose(double tolerance) const;
    /// Whether an imposed row sets the total of `unknown`.
    bool isFreed(std::size_t unknown) const;
    /// How finely (mol/kgw) a row sets its freed total: the total itself, or the row's own scale
    /// Σ|c_k|·m_k over the total's weight when that is larger. A trace of chloride that closes a
    /// 1 eq/kgw charge balance is known to 1e-10 eq/kgw, not to 1e-10 of itself.
    double resolution(const Row& row) const;
    /// Whether the balances close and the step is within the tolerance at the current point.
    bool closes(double tolerance) const;
    /// Moves u_ along step_ until G falls enough; false when no length of the step lowers it.
    bool lineSearch();
    /// Divides the free molality of every component whose species hold several times its total
    /// by that ratio, when that lowers G: a Newton step would take many iterations to get there.
    void scaleDownOvershoots();
    /// Newton steps with line search from the evaluated current point.
    LogSolverOutcome iterate(double tolerance, std::uint64_t iterationLimit);

    std::size_t basisCount_;
    std::vector<std::size_t> basisOfUnknown_;  ///< basis index of each unknown; unknown 0 is "H+"
    std::vector<double> target_;               ///< mol/kgw per unknown; "H+"'s is −Σ z_j·T_j
    std::vector<ActiveSpecies> active_;
    std::vector<Term> terms_;                  ///< ascending unknowns within a species
    std::vector<double> charges_;              ///< per species of the system
    bool feasible_ = true;

    std::vector<double> u_, trial_, balance_, gradient_, step_, scale_;
    std::vector<double> powers_;  ///< per unknown: x^−4 .. x^4 of its free molality at the last evaluation
    std::vector<double> molalities_;  ///< per species of the system; 0 for those left out
    double g_ = 0.0;                  ///< G at u_
    double gNoise_ = 0.0;             ///< rounding scale of G at u_
    tools::ValueMatrix hessian_;

    bool hydrogenFixed_ = false;
    double tolerance_ = 0.0;  ///< of the running solve: freed totals move no finer than it
    /// One per imposed row.
    struct Row {
        std::uint32_t unknown;                ///< the unknown whose total the row sets
        double hydrogenWeight;                ///< b of "H+"
        std::vector<double> unknownWeights;   ///< b of each unknown's basis species
        std::vector<double> speciesWeights;   ///< c_k per species of the system
        double value;                         ///< eq/kgw
        double startTotal;                    ///< mol/kgw, the guess it started from
    };
    std::vector<Row> rows_;
    std::size_t unreachable_ = SIZE_MAX;
    tools::ValueMatrix reduced_;      ///< the Hessian without "H+", when it is held
    std::vector<double> crossColumn_;  ///< ∂(proton balance)/∂u over the other unknowns
};

}  // namespace Brinecast
}  // namespace korvane
