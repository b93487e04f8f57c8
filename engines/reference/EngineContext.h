#pragma once

#include "BrineVolume.h"

#include <cstdint>

namespace korvane {
namespace reference {

/// Everything of one calculation: the components, parameter sets, models and the water phase,
/// and the last evaluation. Every operation returns 0 or the EngineCode of its refusal.
class EngineContext {
public:
    /// "WATER" or "NaCl"; a name loaded before keeps its first index.
    std::int32_t loadComponent(const char* name, std::int32_t& componentIndex);
    /// "LBIP1", "LBIP2" or "LBIP3". Water and NaCl need no interaction parameters here, so the
    /// sets are accepted and have no effect.
    std::int32_t addBipSet(const char* name);
    /// "MCPA", the equation of state; for liquid water it is IAPWS-IF97 Region 1 here.
    std::int32_t addModel(const char* name);
    /// "MSALTDEN", the NaCl volume after Spivey, McCain and North (2004).
    std::int32_t loadSaltDensityModel(const char* name);
    /// "water", whose solvent must be the "WATER" component; the only phase, index 0.
    std::int32_t addPhase(const char* name, std::int32_t solventIndex, std::int32_t& phaseIndex);
    /// Volume of the amounts (mol, by component index) at `temperatureK` and `pressurePa`.
    BrineVolume evaluate(double temperatureK, double pressurePa, const double* amountsMol, std::int32_t amountCount);
    /// Volume in m3 from the last successful evaluation.
    std::int32_t phaseVolume(std::int32_t phaseIndex, double& volumeM3) const;

private:
    std::int32_t componentCount_ = 0;
    std::int32_t waterIndex_ = -1;
    std::int32_t saltIndex_ = -1;
    bool equationOfStateAdded_ = false;
    bool saltDensityModelLoaded_ = false;
    bool waterPhaseAdded_ = false;
    bool evaluated_ = false;
    double volumeM3_ = 0.0;
};

}  // namespace reference
}  // namespace korvane
