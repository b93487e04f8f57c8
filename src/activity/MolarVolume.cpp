#include "activity/MolarVolume.h"

#include <cstddef>

namespace korvane {
namespace Brinecast {

namespace {

constexpr std::size_t kParameterCount = 10;
// SUPCRT92 units (cal, bar) to cm3/mol.
constexpr double kScales[5] = {4.184004, 4184.004, 41.84004, 418400.4, 1e5};
constexpr double kPressureOffsetBar = 2600.0;
constexpr double kTemperatureOffsetK = 228.0;
constexpr double kBarPerAtm = 1.01325;
/// Below this ion size the limiting law is used without its denominator.
constexpr double kSmallestSize = 1e-5;  // Angstrom

}  // namespace

MolarVolume::MolarVolume(const std::vector<double>& parameters, int charge, const WaterProperties& water) {
    if (parameters.empty() || parameters[0] == 0.0) return;
    double p[kParameterCount] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 1};
    for (std::size_t i = 0; i < parameters.size() && i < kParameterCount; ++i) p[i] = parameters[i];
    const double pb = kPressureOffsetBar + kBarPerAtm * water.pressureAtm;  // bar
    const double ts = water.temperatureK - kTemperatureOffsetK;            // K
    infiniteDilution_ = kScales[0] * p[0] + kScales[1] * p[1] / pb + (kScales[2] * p[2] + kScales[3] * p[3] / pb) / ts -
                        kScales[4] * p[4] * water.bornFunction;
    if (charge == 0) return;
    charged_ = true;
    limitingSlope_ = 0.5 * charge * charge * water.volumeSlope;
    sizeB_ = p[5] < kSmallestSize ? 0.0 : p[5] * water.debyeHuckelB;
    if (p[6] != 0.0 || p[7] != 0.0 || p[8] != 0.0) ionTerm_ = p[6] + p[7] / ts + p[8] * ts;
    ionPower_ = p[9];
}

}  // namespace Brinecast
}  // namespace korvane
