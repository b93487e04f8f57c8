#include "database/EquilibriumConstants.h"

#include <cmath>
#include <stdexcept>
#include <string>

namespace korvane {
namespace Brinecast {

namespace {

constexpr double kReciprocalReferenceTemperature = 0.0033540164346805303;  // 1/298.15 K, 1/K
constexpr double kJoulePerKilocalorie = 4184.0;
constexpr double kGasConstantTimesLn10 = 19.14475648772397;  // 8.3144621 J/(mol K) * ln 10
constexpr std::size_t kAnalyticalTerms = 6;

/// A1 + A2 T + A3/T + A4 log10 T + A5/T2 + A6 T2, with only as many terms as coefficients.
double analyticalLogK(const std::vector<double>& coefficients, double temperatureK) {
    if (coefficients.size() > kAnalyticalTerms) {
        throw std::logic_error("An analytical log K expression has at most 6 coefficients (1, T, 1/T, log10 T, "
                               "1/T2, T2); this record has " + std::to_string(coefficients.size()) + ".");
    }
    const double T = temperatureK;
    const double terms[kAnalyticalTerms] = {1.0, T, 1.0 / T, std::log10(T), 1.0 / (T * T), T * T};
    double logK = 0.0;
    for (std::size_t i = 0; i < coefficients.size(); ++i) logK += coefficients[i] * terms[i];
    return logK;
}

double vantHoffLogK(double logK298, double deltaHKcalPerMol, double temperatureK) {
    return logK298 + (deltaHKcalPerMol * kJoulePerKilocalorie / kGasConstantTimesLn10) *
                         (kReciprocalReferenceTemperature - 1.0 / temperatureK);
}

}  // namespace

double logKAt(const ReactionRecord& record, double temperatureK) {
    const ReactionData& data = record.data;
    if (!data.analytical.empty()) return analyticalLogK(data.analytical, temperatureK);
    return vantHoffLogK(data.logK, data.deltaH, temperatureK);
}

korvane::ValueArray logKValues(double temperatureK, const std::vector<ReactionRecord>& records) {
    korvane::ValueArray values(records.size());
    for (std::size_t i = 0; i < records.size(); ++i) {
        const ReactionRecord& record = records[i];
        const auto own = record.data.stoich.find(record.name);
        if (own == record.data.stoich.end()) {
            throw std::logic_error("Reaction record " + std::to_string(i + 1) + " is named \"" + record.name +
                                   "\", which is not one of its species; name each record after the species it forms.");
        }
        // A reaction written for several formula units of its species is scaled to one.
        values[i] = logKAt(record, temperatureK) / own->second;
    }
    return values;
}

}  // namespace Brinecast
}  // namespace korvane
