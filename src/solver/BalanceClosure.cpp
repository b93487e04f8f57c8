#include "solver/BalanceClosure.h"

#include <cmath>
#include <limits>

namespace korvane {
namespace Brinecast {

namespace {

/// The larger of the two, NaN when either is NaN.
double worse(double a, double b) { return std::isnan(a) || std::isnan(b) ? std::numeric_limits<double>::quiet_NaN() : std::fmax(a, b); }

}  // namespace

BalanceClosure BalanceClosure::measure(std::size_t basisCount, const ValueArray& totals,
                                       const std::vector<double>& coefficients, const std::vector<std::int32_t>& charges,
                                       const double* molalities) {
    BalanceClosure closure;
    const std::size_t speciesCount = charges.size();
    for (std::size_t j = 2; j < basisCount; ++j) {
        double sum = 0.0;
        for (std::size_t k = 0; k < speciesCount; ++k) sum += coefficients[k * basisCount + j] * molalities[k];
        const double error = std::fabs(sum - totals[j]);
        closure.residualNorm += error;
        const double relative = totals[j] != 0.0 ? error / std::fabs(totals[j])
                                : sum == 0.0     ? 0.0
                                                 : error * std::numeric_limits<double>::infinity();
        closure.massBalanceError = worse(closure.massBalanceError, relative);
    }
    double charge = 0.0;
    double equivalents = 0.0;
    for (std::size_t k = 0; k < speciesCount; ++k) {
        charge += charges[k] * molalities[k];
        equivalents += std::abs(charges[k]) * molalities[k];
    }
    closure.residualNorm += std::fabs(charge);
    closure.chargeImbalance = std::fabs(charge) / equivalents;
    return closure;
}

}  // namespace Brinecast
}  // namespace korvane
