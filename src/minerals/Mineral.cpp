#include "minerals/Mineral.h"

#include <cmath>

namespace korvane {
namespace Brinecast {

namespace {
constexpr double kReferenceK = 298.15;
/// The gas constant the mineral enthalpies were tabulated with (J/(mol K)).
constexpr double kGasConstant = 8.31470;
constexpr double kLn10 = 2.302585092994045684;
constexpr double kJPerKJ = 1000.0;
}  // namespace

double Mineral::logKAt(double temperatureK) const {
    const double t = temperatureK;
    if (!analytical.empty()) {
        // Terms beyond the list are zero; a shorter list is the usual way the data omits them.
        const double terms[6] = {1.0, t, 1.0 / t, std::log10(t), 1.0 / (t * t), t * t};
        double logK = 0.0;
        for (std::size_t i = 0; i < analytical.size() && i < 6; ++i) logK += analytical[i] * terms[i];
        return logK;
    }
    return logK25 + deltaHKJPerMol * kJPerKJ / (kGasConstant * kLn10) * (1.0 / kReferenceK - 1.0 / t);
}

}  // namespace Brinecast
}  // namespace korvane
