#include "brinecast/EngineDensity.h"

#include "database/SpeciesModel.h"
#include "engine/SaltDensityCalculator.h"

namespace korvane::Brinecast::cli {

double EngineDensity::of(const Input& input) {
    const SpeciesModel model;
    SaltDensityCalculator calculator(input, model);
    return calculator.density();
}

}  // namespace korvane::Brinecast::cli
