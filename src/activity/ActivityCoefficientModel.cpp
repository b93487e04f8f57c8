#include "activity/ActivityCoefficientModel.h"

#include "activity/DaviesActivity.h"
#include "activity/DebyeHuckelActivity.h"
#include "activity/IdealActivity.h"

#include <cmath>
#include <stdexcept>
#include <string>

namespace korvane {
namespace Brinecast {

namespace {
constexpr double kWaterActivitySlope = 0.017;  // kg/mol
}

std::unique_ptr<const ActivityCoefficientModel> ActivityCoefficientModel::prepare(
    ActivityModel model, const SpeciationSystem& system, const std::vector<ReactionRecord>& records,
    double temperatureK, double pressurePa) {
    switch (model) {
    case ActivityModel::Ideal:
        return std::make_unique<IdealActivity>(system);
    case ActivityModel::Davies:
        return std::make_unique<DaviesActivity>(system, records, temperatureK, pressurePa);
    case ActivityModel::DebyeHuckel:
        return std::make_unique<DebyeHuckelActivity>(system, records, temperatureK, pressurePa);
    case ActivityModel::Pitzer:
        throw std::invalid_argument(
            "ActivityModel::Pitzer is not available yet; use ActivityModel::DebyeHuckel, Davies or Ideal.");
    }
    throw std::invalid_argument("Unknown activity model " + std::to_string(static_cast<int>(model)) +
                                "; use ActivityModel::Ideal, Davies or DebyeHuckel.");
}

double ActivityCoefficientModel::linearLogWaterActivity(double soluteMolality) {
    return std::log10(1.0 - kWaterActivitySlope * soluteMolality);
}

}  // namespace Brinecast
}  // namespace korvane
