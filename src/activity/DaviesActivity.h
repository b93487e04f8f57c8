#pragma once

#include "activity/ActivityCoefficientModel.h"
#include "activity/ActivitySpecies.h"

#include <vector>

namespace korvane {
namespace Brinecast {

/// Davies for every ion, 0.1·I for neutral species, the linear water activity: needs nothing of a
/// species but its charge, and holds to about 0.5 mol/kgw. log K stays at 1 atm: the Davies model
/// carries no molar volumes, so a pressure correction would mix two levels of description.
class DaviesActivity : public ActivityCoefficientModel {
public:
    DaviesActivity(const SpeciationSystem& system, const std::vector<ReactionRecord>& records, double temperatureK,
                   double pressurePa);

    void logActivityCoefficients(double ionicStrength, double* logGamma) const override;
    void logEquilibriumConstants(double ionicStrength, double* logK) const override;
    double logWaterActivity(double soluteMolality) const override;

private:
    std::vector<ActivitySpecies> species_;
    std::vector<double> logK_;
    double a_ = 0.0;  ///< Debye–Hückel A, (kg/mol)^0.5
};

}  // namespace Brinecast
}  // namespace korvane
