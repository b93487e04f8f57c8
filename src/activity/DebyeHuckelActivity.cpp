#include "activity/DebyeHuckelActivity.h"

#include <algorithm>
#include <cmath>

namespace korvane {
namespace Brinecast {

DebyeHuckelActivity::DebyeHuckelActivity(const SpeciationSystem& system, const std::vector<ReactionRecord>& records,
                                         double temperatureK, double pressurePa)
    : water_(WaterProperties::at(temperatureK, pressurePa)),
      species_(ActivitySpecies::of(system, records, true)),
      logK_(system.logK),
      pressure_(system, records, water_) {}

void DebyeHuckelActivity::logActivityCoefficients(double ionicStrength, double* logGamma) const {
    const double root = std::sqrt(ionicStrength);
    const double a = water_.debyeHuckelA;
    const double b = water_.debyeHuckelB;
    for (std::size_t k = 0; k < species_.size(); ++k) logGamma[k] = species_[k].logGamma(a, b, root, ionicStrength);
}

void DebyeHuckelActivity::logEquilibriumConstants(double ionicStrength, double* logK) const {
    std::copy(logK_.begin(), logK_.end(), logK);
    pressure_.apply(ionicStrength, logK);
}

double DebyeHuckelActivity::logWaterActivity(double soluteMolality) const {
    return linearLogWaterActivity(soluteMolality);
}

}  // namespace Brinecast
}  // namespace korvane
