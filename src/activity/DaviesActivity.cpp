#include "activity/DaviesActivity.h"

#include "activity/WaterProperties.h"

#include <algorithm>
#include <cmath>

namespace korvane {
namespace Brinecast {

DaviesActivity::DaviesActivity(const SpeciationSystem& system, const std::vector<ReactionRecord>& records,
                               double temperatureK, double pressurePa)
    : species_(ActivitySpecies::of(system, records, false)),
      logK_(system.logK),
      a_(WaterProperties::at(temperatureK, pressurePa).debyeHuckelA) {}

void DaviesActivity::logActivityCoefficients(double ionicStrength, double* logGamma) const {
    const double root = std::sqrt(ionicStrength);
    for (std::size_t k = 0; k < species_.size(); ++k) logGamma[k] = species_[k].logGamma(a_, 0.0, root, ionicStrength);
}

void DaviesActivity::logEquilibriumConstants(double, double* logK) const { std::copy(logK_.begin(), logK_.end(), logK); }

double DaviesActivity::logWaterActivity(double soluteMolality) const { return linearLogWaterActivity(soluteMolality); }

}  // namespace Brinecast
}  // namespace korvane
