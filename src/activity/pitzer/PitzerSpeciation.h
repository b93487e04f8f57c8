#pragma once

#include "activity/MolarVolume.h"
#include "activity/WaterProperties.h"
#include "activity/pitzer/PitzerActivity.h"
#include "activity/pitzer/PitzerDatabase.h"

#include <korvane/MineralSaturation.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace korvane {
namespace Brinecast {

/// One component of a brine under the Pitzer model: its master species and total.
struct PitzerComponent {
    std::int32_t master = -1;  ///< index into the database's species
    double total = 0.0;        ///< mol/kgw, > 0
};

/// A solved brine: every species of its Pitzer set, the water terms and the saturation of the
/// Pitzer minerals its components can form.
struct PitzerSolution {
    std::vector<std::int32_t> species;  ///< database indices; H+ first, then the masters, then formed species
    std::vector<double> molalities;     ///< mol/kgw
    std::vector<double> logGammas;      ///< log10 γ
    std::vector<double> logK;           ///< log10 K of formation at T, P' and I (0 for H+ and the masters)
    std::vector<double> contents;       ///< count of unknown b in species s at s·unknowns + b (b = 0: H+)
    std::size_t unknowns = 0;           ///< H+ and the components
    double pH = 0.0;                    ///< −log10 a(H+) in the chosen single-ion convention
    double ionicStrength = 0.0;         ///< mol/kgw
    double logWaterActivity = 0.0;
    double osmoticCoefficient = 1.0;
    std::uint64_t iterations = 0;       ///< Newton steps over every activity update
    bool converged = false;
    /// Unknown whose freed total no positive amount could set (it vanished or passed 30 mol/kgw);
    /// SIZE_MAX when none did.
    std::size_t unreachable = SIZE_MAX;
    std::vector<MineralSaturation> minerals;
};

/// Speciation and pH by charge balance under the Pitzer model, or at a measured pH with rows
/// that set a component's total in place of its mass balance: Newton on the log10 activities of
/// H+ and the master species with γ, a(H2O) and log K(I) held, inside a fixed point on those
/// (as PHREEQC converges the same equations). The fixed point contracts fast because the virial
/// coefficients hang mostly on the major ions, whose molalities the mass balances pin.
class PitzerSpeciation {
public:
    /// `components` with positive totals, at `temperatureK` (K) and `pressurePa` (Pa).
    PitzerSpeciation(const PitzerDatabase& database, const std::vector<PitzerComponent>& components,
                     double temperatureK, double pressurePa, bool macInnes);

    /// Converges every mass balance to `tolerance` × its total, the charge balance to `tolerance`
    /// × Σ|z|m, the last correction of every molality and the activity coefficients to `tolerance`
    /// (relative, log10 γ to 10 × it); at most `iterationLimit` Newton steps per activity update.
    PitzerSolution solve(double tolerance, std::uint64_t iterationLimit);

    /// Holds −log10 a(H+) at the measured `pH`: the charge balance then no longer sets it and
    /// is only reported, unless a row of `impose` takes it up.
    void fixPH(double pH);
    /// Replaces the mass balance of unknown `freedUnknown` (a component) by Σ_s w_s·m_s = `value`
    /// (eq/kgw), w_s = Σ_b count(b, s)·`unknownWeights`[b]: the charge balance with the charges
    /// of H+ and the masters, the alkalinity with their alkalinities. That component's total then
    /// follows from the solution. Needs the pH fixed first.
    void impose(const std::vector<double>& unknownWeights, double value, std::size_t freedUnknown);

    /// The species, their contents and log K at T and P' (I = 0), before any solving: what a
    /// report needs to name and check the species of a result.
    PitzerSolution layout() const;

private:
    std::size_t newtonSteps(double tolerance, std::uint64_t limit, bool& converged);
    /// Newton inside the fixed point on γ, a(H2O) and log K(I); whether both converged.
    bool settle(double tolerance, std::uint64_t iterationLimit, std::uint64_t& iterations);
    /// Residuals of the rows and their Jacobian at the current molalities, and Σ|w|m of the rows
    /// scaled by it.
    void assemble();
    /// Σ_s count(b, s)·m_s (mol/kgw): the total the molalities give component `unknown`.
    double contentOf(std::size_t unknown) const;
    /// Whether a freed total has passed what any brine may hold (then unreachable when its row asks
    /// for more still).
    bool freedTotalOutOfRange();
    /// A freed total that the Newton step in `residuals_` pushes further below a vanishing amount
    /// is held there for the rest of the stage: no positive total meets its row at this γ, and
    /// the other rows still close.
    void holdVanishingTotals();
    /// Turns the rows of held totals into "no step" and returns their largest scaled residual.
    double setAsideHeldRows();
    bool anyHeld() const { return std::find(held_.begin(), held_.end(), 1) != held_.end(); }
    /// Lays the imposed rows over the mass balances they replace.
    void applyPendingRows();
    void updateMolalities();
    void updateActivity();
    std::vector<double> volumesAt(double ionicStrength) const;
    void computeMinerals(PitzerSolution& solution) const;

    const PitzerDatabase& database_;
    WaterProperties water_;
    std::vector<double> totals_;         ///< per unknown; entry 0 (H+) unused
    std::vector<std::int32_t> species_;  ///< database indices
    std::vector<int> charges_;
    std::vector<double> contents_;       ///< s·unknowns + b
    std::vector<double> waterCounts_;
    std::vector<double> baseLogK_;       ///< log10 K at T and 1 atm
    std::vector<double> logK_;           ///< with the pressure term at the current I
    std::vector<MolarVolume> volumes_;
    std::int32_t phantom_ = -1;          ///< Cl- present only for the MacInnes scale, molality 0
    std::size_t unknowns_ = 0;
    std::vector<double> logActivity_;    ///< per unknown
    std::vector<double> logGamma_;
    std::vector<double> molalities_;
    double logWaterActivity_ = 0.0;
    PitzerState state_;
    std::unique_ptr<PitzerActivity> activity_;
    std::vector<double> jacobian_;   ///< n×n, row-major
    std::vector<double> residuals_;  ///< then the Newton step
    /// Row r of the Newton system reads Σ_s weights_[s·unknowns + r]·m_s = targets_[r]: row 0 the
    /// charge balance (it sets H+), row b the mass balance of component b, or a row imposed in
    /// its place.
    std::vector<double> weights_;
    std::vector<double> targets_;      ///< mol/kgw or eq/kgw per row
    std::vector<char> byMagnitude_;    ///< row scaled by Σ|w|m rather than by its target
    std::vector<double> magnitudes_;   ///< Σ|w|m per row so scaled, eq/kgw
    /// An imposed row until the balances at the starting totals have closed.
    struct PendingRow {
        std::size_t freedUnknown;
        double value;                       ///< eq/kgw
        std::vector<double> speciesWeights; ///< per species
    };
    std::vector<PendingRow> pending_;
    std::vector<std::size_t> freed_;   ///< unknowns whose total an imposed row sets
    std::vector<double> freedStart_;   ///< mol/kgw, their totals before solving
    std::size_t unreachable_ = SIZE_MAX;
    bool hydrogenFixed_ = false;
    std::vector<char> held_;  ///< per unknown: a freed total held at a vanishing amount this stage
};

}  // namespace Brinecast
}  // namespace korvane
