#include "engine/KorvaneDll.h"

#include "engine/FloatingPointEnvironmentGuard.h"

#include <cstdlib>
#include <stdexcept>

namespace korvane {
namespace {

// Both are set up when the library is loaded into the process, in this order: the switch is
// read once, so changing KV_DLL_LOG later has no effect.
const bool logSwitchOn = std::getenv("KV_DLL_LOG") != nullptr;
const std::shared_ptr<KorvaneDll> sharedInstance = std::make_shared<KorvaneDll>();

constexpr std::array<const char*, 9> entryPointNames{
    KVPVT_CONTEXT_CREATE_NAME, KVPVT_CONTEXT_DESTROY_NAME, KVPVT_LOAD_COMPONENT_NAME,
    KVPVT_ADD_BIP_SET_NAME,    KVPVT_ADD_MODEL_NAME,       KVPVT_LOAD_SALT_DENSITY_MODEL_NAME,
    KVPVT_ADD_PHASE_NAME,      KVPVT_EVALUATE_NAME,        KVPVT_PHASE_VOLUME_NAME};

/// A bridge message, naming the bridge function in front when KV_DLL_LOG is set.
std::string bridgeMessage(const char* function, const std::string& text) {
    return logSwitchOn ? "In function: " + std::string(function) + ": " + text : text;
}

}  // namespace

KorvaneDll::KorvaneDll() = default;

KorvaneDll::~KorvaneDll() {
    platform::closeLibrary(module_.exchange(nullptr));
}

const std::shared_ptr<KorvaneDll>& KorvaneDll::shared() { return sharedInstance; }

void KorvaneDll::load(const std::string& path) {
    const std::lock_guard<std::mutex> lock(loadMutex_);
    loadLocked(path);
}

void KorvaneDll::loadLocked(const std::string& path) {
    // A library loaded before is deliberately not closed: cached entry points may point into it.
    platform::ModuleHandle module = nullptr;
    {
        const FloatingPointEnvironmentGuard hostSettings;
        module = platform::openLibrary(path);
    }
    module_.store(module, std::memory_order_release);
    if (module == nullptr) {
        throw std::runtime_error(bridgeMessage("KorvaneDll::load", "cannot load korvane DLL " + path));
    }
    std::string fullName = platform::moduleFileName(module);
    libraryPath_ = fullName.empty() ? path : std::move(fullName);
    everLoaded_.store(true, std::memory_order_release);
}

bool KorvaneDll::loadOnce(const std::string& directory) {
    if (everLoaded_.load(std::memory_order_acquire)) return true;
    const std::lock_guard<std::mutex> lock(loadMutex_);
    // Another thread may have loaded it while this one waited for the lock.
    if (!libraryPath_.empty()) return true;
    for (const char* fileName : libraryFileNames) {
        try {
            loadLocked(directory + fileName);
            return true;
        } catch (const std::runtime_error&) {
            // try the next name
        }
    }
    return false;
}

void* KorvaneDll::resolveEntryPoint(const char* name) {
    if (module_.load(std::memory_order_acquire) == nullptr) {
        const std::lock_guard<std::mutex> lock(loadMutex_);
        if (module_.load(std::memory_order_acquire) == nullptr && !libraryPath_.empty()) {
            const std::string path = libraryPath_;
            loadLocked(path);
        }
    }
    const platform::ModuleHandle module = module_.load(std::memory_order_acquire);
    void* address = platform::findSymbol(module, name);
    if (address == nullptr) address = platform::findSymbol(module, name);
    if (address == nullptr) {
        throw std::runtime_error(bridgeMessage("KorvaneDll::resolveEntryPoint",
                                               "Could not load symbol " + std::string(name) + " from " + libraryPath_));
    }
    return address;
}

template <typename Function>
Function KorvaneDll::entryPoint(EntryPoint which) {
    void* address = entryPoints_[which].load(std::memory_order_acquire);
    if (address == nullptr) {
        address = resolveEntryPoint(entryPointNames[which]);
        entryPoints_[which].store(address, std::memory_order_release);
    }
    return reinterpret_cast<Function>(address);
}

KvpvtContext* KorvaneDll::createContext(std::int32_t* errorCount, std::int32_t* errorCodes) {
    const FloatingPointEnvironmentGuard hostSettings;
    return entryPoint<decltype(&kvpvt_context_create)>(ContextCreate)(errorCount, errorCodes);
}

void KorvaneDll::destroyContext(KvpvtContext* context) {
    const FloatingPointEnvironmentGuard hostSettings;
    entryPoint<decltype(&kvpvt_context_destroy)>(ContextDestroy)(context);
}

void KorvaneDll::loadComponent(KvpvtContext* context, const char* name, std::int32_t* componentIndex,
                               std::int32_t* errorCount, std::int32_t* errorCodes) {
    const FloatingPointEnvironmentGuard hostSettings;
    entryPoint<decltype(&kvpvt_load_component)>(LoadComponent)(context, name, componentIndex, errorCount,
                                                                errorCodes);
}

void KorvaneDll::addBipSet(KvpvtContext* context, const char* name, std::int32_t* errorCount,
                           std::int32_t* errorCodes) {
    const FloatingPointEnvironmentGuard hostSettings;
    entryPoint<decltype(&kvpvt_add_bip_set)>(AddBipSet)(context, name, errorCount, errorCodes);
}

void KorvaneDll::addModel(KvpvtContext* context, const char* name, std::int32_t* errorCount,
                          std::int32_t* errorCodes) {
    const FloatingPointEnvironmentGuard hostSettings;
    entryPoint<decltype(&kvpvt_add_model)>(AddModel)(context, name, errorCount, errorCodes);
}

void KorvaneDll::loadSaltDensityModel(KvpvtContext* context, const char* name, std::int32_t* errorCount,
                                      std::int32_t* errorCodes) {
    const FloatingPointEnvironmentGuard hostSettings;
    entryPoint<decltype(&kvpvt_load_salt_density_model)>(LoadSaltDensityModel)(context, name, errorCount,
                                                                                errorCodes);
}

void KorvaneDll::addPhase(KvpvtContext* context, const char* name, std::int32_t solventIndex,
                          std::int32_t* phaseIndex, std::int32_t* errorCount, std::int32_t* errorCodes) {
    const FloatingPointEnvironmentGuard hostSettings;
    entryPoint<decltype(&kvpvt_add_phase)>(AddPhase)(context, name, solventIndex, phaseIndex, errorCount,
                                                      errorCodes);
}

void KorvaneDll::evaluate(KvpvtContext* context, double temperatureK, double pressurePa, const double* amountsMol,
                          std::int32_t amountCount, std::int32_t* errorCount, std::int32_t* errorCodes) {
    const FloatingPointEnvironmentGuard hostSettings;
    entryPoint<decltype(&kvpvt_evaluate)>(Evaluate)(context, temperatureK, pressurePa, amountsMol, amountCount,
                                                     errorCount, errorCodes);
}

void KorvaneDll::phaseVolume(KvpvtContext* context, std::int32_t phaseIndex, double* volumeM3,
                             std::int32_t* errorCount, std::int32_t* errorCodes) {
    const FloatingPointEnvironmentGuard hostSettings;
    entryPoint<decltype(&kvpvt_phase_volume)>(PhaseVolume)(context, phaseIndex, volumeM3, errorCount,
                                                            errorCodes);
}

}  // namespace korvane
