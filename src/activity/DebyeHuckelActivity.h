#pragma once

#include "activity/ActivityCoefficientModel.h"
#include "activity/ActivitySpecies.h"
#include "activity/PressureCorrection.h"

#include <vector>

namespace korvane {
namespace Brinecast {

/// Extended (WATEQ) Debye–Hückel with each species' ion size a and salting coefficient b from its
/// record's "gamma", Davies for ions without, 0.1·I for neutral species without; the linear water
/// activity; A and B from water's dielectric constant and density at T and P; log K corrected for
/// pressure from the species' molar volumes. Fitted to NaCl-like waters: trace Ba, Sr and SO4 in
/// strong brines drift, which the Pitzer model is for.
class DebyeHuckelActivity : public ActivityCoefficientModel {
public:
    DebyeHuckelActivity(const SpeciationSystem& system, const std::vector<ReactionRecord>& records,
                        double temperatureK, double pressurePa);

    void logActivityCoefficients(double ionicStrength, double* logGamma) const override;
    void logEquilibriumConstants(double ionicStrength, double* logK) const override;
    double logWaterActivity(double soluteMolality) const override;

private:
    WaterProperties water_;
    std::vector<ActivitySpecies> species_;
    std::vector<double> logK_;  ///< log K(T) at 1 atm
    PressureCorrection pressure_;
};

}  // namespace Brinecast
}  // namespace korvane
