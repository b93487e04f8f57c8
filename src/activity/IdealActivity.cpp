#include "activity/IdealActivity.h"

#include <algorithm>

namespace korvane {
namespace Brinecast {

void IdealActivity::logActivityCoefficients(double, double* logGamma) const {
    std::fill(logGamma, logGamma + logK_.size(), 0.0);
}

void IdealActivity::logEquilibriumConstants(double, double* logK) const { std::copy(logK_.begin(), logK_.end(), logK); }

double IdealActivity::logWaterActivity(double) const { return 0.0; }

}  // namespace Brinecast
}  // namespace korvane
