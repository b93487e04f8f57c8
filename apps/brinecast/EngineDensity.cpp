#include "brinecast/EngineDensity.h"

#include "database/SpeciesModel.h"
#include "engine/KorvaneDll.h"
#include "engine/SaltDensityCalculator.h"

namespace korvane::Brinecast::cli {

bool EngineDensity::load(const std::string& directory) {
    return KorvaneDll::shared()->loadOnce(directory);
}

double EngineDensity::of(const Input& input) {
    const SpeciesModel model;
    SaltDensityCalculator calculator(input, model);
    return calculator.density();
}

}  // namespace korvane::Brinecast::cli
