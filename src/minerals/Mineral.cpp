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

std::array<double, 6> Mineral::temperatureTerms(double temperatureK) {
    const double t = temperatureK;
    return {1.0, t, 1.0 / t, std::log10(t), 1.0 / (t * t), t * t};
}

double Mineral::logKAt(const std::array<double, 6>& terms) const {
    if (!analytical.empty()) {
        // Coefficients beyond the list are zero; a shorter list is how the data omits them.
        double logK = 0.0;
        for (std::size_t i = 0; i < analytical.size() && i < terms.size(); ++i) logK += analytical[i] * terms[i];
        return logK;
    }
    const double inverseT = terms[2];  // 1/K
    return logK25 + deltaHKJPerMol * kJPerKJ / (kGasConstant * kLn10) * (1.0 / kReferenceK - inverseT);
}

}  // namespace Brinecast
}  // namespace korvane
