#include "EngineContext.h"

#include "EngineCodes.h"

#include <cstring>

namespace korvane {
namespace reference {
namespace {

bool named(const char* name, const char* expected) { return name != nullptr && std::strcmp(name, expected) == 0; }

}  // namespace

std::int32_t EngineContext::loadComponent(const char* name, std::int32_t& componentIndex) {
    std::int32_t* slot = named(name, "WATER") ? &waterIndex_ : named(name, "NaCl") ? &saltIndex_ : nullptr;
    if (slot == nullptr) return UnknownComponent;
    if (*slot < 0) *slot = componentCount_++;
    componentIndex = *slot;
    evaluated_ = false;
    return 0;
}

std::int32_t EngineContext::addBipSet(const char* name) {
    return named(name, "LBIP1") || named(name, "LBIP2") || named(name, "LBIP3") ? 0 : UnknownBipSet;
}

std::int32_t EngineContext::addModel(const char* name) {
    if (!named(name, "MCPA")) return UnknownModel;
    equationOfStateAdded_ = true;
    return 0;
}

std::int32_t EngineContext::loadSaltDensityModel(const char* name) {
    if (!named(name, "MSALTDEN")) return UnknownSaltDensityModel;
    saltDensityModelLoaded_ = true;
    return 0;
}

std::int32_t EngineContext::addPhase(const char* name, std::int32_t solventIndex, std::int32_t& phaseIndex) {
    if (!named(name, "water")) return UnknownPhase;
    if (waterIndex_ < 0 || solventIndex != waterIndex_) return SolventIsNotWater;
    waterPhaseAdded_ = true;
    phaseIndex = 0;
    return 0;
}

BrineVolume EngineContext::evaluate(double temperatureK, double pressurePa, const double* amountsMol,
                                    std::int32_t amountCount) {
    evaluated_ = false;
    BrineVolume result;
    if (!equationOfStateAdded_ || !saltDensityModelLoaded_ || !waterPhaseAdded_) {
        result.error = SetUpIncomplete;
    } else if (amountsMol == nullptr || amountCount != componentCount_) {
        result.error = AmountCountMismatch;
    } else {
        const double saltMol = saltIndex_ >= 0 ? amountsMol[saltIndex_] : 0.0;
        result = brineVolume(temperatureK, pressurePa, amountsMol[waterIndex_], saltMol);
    }
    evaluated_ = result.error == 0;
    volumeM3_ = result.volumeM3;
    return result;
}

std::int32_t EngineContext::phaseVolume(std::int32_t phaseIndex, double& volumeM3) const {
    if (!waterPhaseAdded_ || phaseIndex != 0) return UnknownPhaseIndex;
    if (!evaluated_) return NotEvaluated;
    volumeM3 = volumeM3_;
    return 0;
}

}  // namespace reference
}  // namespace korvane
