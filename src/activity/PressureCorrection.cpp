#include "activity/PressureCorrection.h"

#include <cmath>

namespace korvane {
namespace Brinecast {

namespace {
constexpr double kReferencePressureAtm = 1.0;
constexpr double kPaPerAtm = 101325.0;
constexpr double kCm3ToM3 = 1e-6;
/// The gas constant the volume parameters were fitted with (J/(mol K)).
constexpr double kGasConstant = 8.31470;
constexpr double kLn10 = 2.302585092994045684;
constexpr double kWaterMolarMass = 18.016;  // g/mol, as the fitted volumes assume
constexpr std::size_t kWater = 0;
constexpr std::size_t kHydrogen = 1;
}  // namespace

PressureCorrection::PressureCorrection(const SpeciationSystem& system, const std::vector<ReactionRecord>& records,
                                       const WaterProperties& water)
    : basisCount_(system.basisCount), coefficients_(system.coefficients) {
    factor_ = logKPerVolume(water);
    if (factor_ == 0.0) return;
    waterVolume_ = waterVolume(water);
    volumes_.reserve(system.speciesCount());
    for (std::size_t k = 0; k < system.speciesCount(); ++k)
        volumes_.emplace_back(records[system.records[k]].data.Vm, system.charges[k], water);
    // "H+" carries no volume by convention: every ion's volume is relative to it.
    masterOf_.assign(system.masterSpecies.begin(), system.masterSpecies.end());
    masterOf_[kWater] = -1;
    masterOf_[kHydrogen] = -1;
}

double PressureCorrection::logKPerVolume(const WaterProperties& water) {
    if (!(water.pressureAtm > kReferencePressureAtm)) return 0.0;
    return -kCm3ToM3 * (water.pressureAtm - kReferencePressureAtm) * kPaPerAtm /
           (kLn10 * kGasConstant * water.temperatureK);
}

double PressureCorrection::waterVolume(const WaterProperties& water) {
    return kWaterMolarMass / water.densityGPerCm3;
}

void PressureCorrection::apply(double ionicStrength, double* logK) const {
    if (!active()) return;
    const double root = std::sqrt(ionicStrength);
    std::vector<double> basisVolumes(basisCount_, 0.0);  // cm3/mol
    basisVolumes[kWater] = waterVolume_;
    for (std::size_t j = 0; j < basisCount_; ++j) {
        if (masterOf_[j] >= 0) basisVolumes[j] = volumes_[static_cast<std::size_t>(masterOf_[j])].at(ionicStrength, root);
    }
    const double* a = coefficients_.data();
    for (std::size_t k = 0; k < volumes_.size(); ++k, a += basisCount_) {
        double change = volumes_[k].at(ionicStrength, root);  // products minus reactants, cm3/mol
        for (std::size_t j = 0; j < basisCount_; ++j) change -= a[j] * basisVolumes[j];
        logK[k] += factor_ * change;
    }
}

}  // namespace Brinecast
}  // namespace korvane
