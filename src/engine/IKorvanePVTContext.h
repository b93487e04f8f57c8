#pragma once

#include <korvane/EngineAbi.h>

#include <cstdint>

namespace korvane {
namespace oldapi {

/// The operations of a thermodynamic engine library, one per entry point of korvane/EngineAbi.h,
/// with that entry point's parameters and units (K, Pa, mol, m3). Results and error codes come
/// back exactly as the engine reports them; checking them is the caller's business.
class IKorvanePVTContext {
public:
    virtual ~IKorvanePVTContext() = default;

    virtual KvpvtContext* createContext(std::int32_t* errorCount, std::int32_t* errorCodes) = 0;
    virtual void destroyContext(KvpvtContext* context) = 0;
    virtual void loadComponent(KvpvtContext* context, const char* name, std::int32_t* componentIndex,
                               std::int32_t* errorCount, std::int32_t* errorCodes) = 0;
    virtual void addBipSet(KvpvtContext* context, const char* name, std::int32_t* errorCount,
                           std::int32_t* errorCodes) = 0;
    virtual void addModel(KvpvtContext* context, const char* name, std::int32_t* errorCount,
                          std::int32_t* errorCodes) = 0;
    virtual void loadSaltDensityModel(KvpvtContext* context, const char* name, std::int32_t* errorCount,
                                      std::int32_t* errorCodes) = 0;
    virtual void addPhase(KvpvtContext* context, const char* name, std::int32_t solventIndex,
                          std::int32_t* phaseIndex, std::int32_t* errorCount, std::int32_t* errorCodes) = 0;
    /// `temperatureK` in K, `pressurePa` in Pa, `amountsMol` in mol ordered by component index.
    virtual void evaluate(KvpvtContext* context, double temperatureK, double pressurePa,
                          const double* amountsMol, std::int32_t amountCount, std::int32_t* errorCount,
                          std::int32_t* errorCodes) = 0;
    /// Writes the phase volume in m3.
    virtual void phaseVolume(KvpvtContext* context, std::int32_t phaseIndex, double* volumeM3,
                             std::int32_t* errorCount, std::int32_t* errorCodes) = 0;
};

}  // namespace oldapi
}  // namespace korvane
