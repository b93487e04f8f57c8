#include "brinecast/calculation/EngineDensity.h"

#include "brinecast/calculation/SharedReactionData.h"

#include "engine/KorvaneDll.h"
#include "engine/SaltDensityCalculator.h"

namespace korvane::Brinecast::cli {

bool EngineDensity::load(const std::string& directory) {
    return KorvaneDll::shared()->loadOnce(directory);
}

double EngineDensity::of(const Input& input) {
    SaltDensityCalculator calculator(input, SharedReactionData::model());
    return calculator.density();
}

}  // namespace korvane::Brinecast::cli
