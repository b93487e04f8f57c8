#pragma once

#include "activity/ActivityCoefficientModel.h"

#include <vector>

namespace korvane {
namespace Brinecast {

/// Activities equal to molalities, water activity 1, log K at 1 atm: the model of `run`.
class IdealActivity : public ActivityCoefficientModel {
public:
    explicit IdealActivity(const SpeciationSystem& system) : logK_(system.logK) {}

    bool ideal() const override { return true; }
    void logActivityCoefficients(double ionicStrength, double* logGamma) const override;
    void logEquilibriumConstants(double ionicStrength, double* logK) const override;
    double logWaterActivity(double soluteMolality) const override;

private:
    std::vector<double> logK_;
};

}  // namespace Brinecast
}  // namespace korvane
