#pragma once

#include "activity/MolarVolume.h"
#include "activity/WaterProperties.h"
#include "activity/pitzer/PitzerActivity.h"
#include "activity/pitzer/PitzerDatabase.h"

#include <korvane/MineralSaturation.h>

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
    std::vector<MineralSaturation> minerals;
};

/// Speciation and pH by charge balance under the Pitzer model: Newton on the log10 activities of
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

    /// The species, their contents and log K at T and P' (I = 0), before any solving: what a
    /// report needs to name and check the species of a result.
    PitzerSolution layout() const;

private:
    std::size_t newtonSteps(double tolerance, std::uint64_t limit, bool& converged);
    /// Residuals of the charge and mass balances and their Jacobian at the current molalities;
    /// returns Σ|z|m (eq/kgw), the charge balance's scale.
    double assemble();
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
};

}  // namespace Brinecast
}  // namespace korvane
