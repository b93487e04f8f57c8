#pragma once

#include "activity/MolarVolume.h"
#include "activity/WaterProperties.h"
#include "database/ReactionRecord.h"
#include "solver/SpeciationSystem.h"

#include <cstdint>
#include <string>
#include <vector>

namespace korvane {
namespace Brinecast {

/// The change of each formation reaction's log K between 1 atm and the brine's pressure, from the
/// volume change of the reaction: −ΔV·(P − 1 atm)/(RT ln 10). ΔV depends on the ionic strength
/// through the ions' volumes, so it is evaluated in every iteration. Below 1 atm (effective
/// pressure, so never above 100 °C) there is none.
class PressureCorrection {
public:
    PressureCorrection(const SpeciationSystem& system, const std::vector<ReactionRecord>& records,
                       const WaterProperties& water);

    bool active() const { return factor_ != 0.0; }
    /// Change of log10 K per cm3/mol of reaction volume at `water`'s effective pressure; 0 at or
    /// below 1 atm. Mineral dissolutions are corrected with the same factor.
    static double logKPerVolume(const WaterProperties& water);
    /// Molar volume of water itself (cm3/mol) as the fitted volumes assume it: 18.016 g/mol over
    /// the density of pure water.
    static double waterVolume(const WaterProperties& water);
    /// Adds the correction at `ionicStrength` (mol/kgw) to the log10 K of every species.
    void apply(double ionicStrength, double* logK) const;

private:
    std::size_t basisCount_ = 0;
    std::vector<double> coefficients_;   ///< the system's A(j, k) at k·basisCount + j
    std::vector<MolarVolume> volumes_;    ///< per species
    std::vector<std::int32_t> masterOf_;  ///< per basis name: its species, −1 for water and "H+"
    double waterVolume_ = 0.0;            ///< cm3/mol of pure water
    double factor_ = 0.0;                 ///< log10 K per cm3/mol of ΔV
};

}  // namespace Brinecast
}  // namespace korvane
