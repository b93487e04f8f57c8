#pragma once

#include "engine/IKorvanePVTContext.h"
#include "engine/Platform.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <memory>
#include <mutex>
#include <string>

namespace korvane {

/// The bridge to the thermodynamic engine library: loads it at run time, resolves each entry
/// point by name on its first use and forwards every call unchanged. The process has one shared
/// instance (`shared()`), so the engine is loaded at most once per process and stays loaded.
/// Loading is serialised by one lock, so that many threads may ask for the engine's first load at
/// once; once loaded, calls come from any thread without a lock. Every forwarded call puts the
/// host's floating-point traps and rounding mode back as they were when it returns.
class KorvaneDll : public oldapi::IKorvanePVTContext {
public:
    /// The engine library file names tried in a directory, in this order.
    static constexpr std::array<const char*, 3> libraryFileNames{"//kvpvt64.dll", "//KVBJ01.dll", "//KVKOG.dll"};

    KorvaneDll();
    /// Unloads the library if one is held.
    ~KorvaneDll() override;
    KorvaneDll(const KorvaneDll&) = delete;
    KorvaneDll& operator=(const KorvaneDll&) = delete;

    /// The instance every calculation of the process uses, created when the library is loaded.
    static const std::shared_ptr<KorvaneDll>& shared();

    /// Loads the engine library file `path` with the host's floating-point traps kept as they
    /// were. Throws std::runtime_error "cannot load korvane DLL " + path; a failed load leaves
    /// no module held and `libraryPath()` as it was.
    void load(const std::string& path);

    /// Does nothing when a library was loaded before. Otherwise loads `directory` + each of
    /// `libraryFileNames` in turn (the "//" is appended to the directory as it stands) until one
    /// loads. False when none does.
    bool loadOnce(const std::string& directory);

    /// Address of the entry point `name`, loading the library again from `libraryPath()` when
    /// none is held. Throws std::runtime_error "Could not load symbol " + name + " from " +
    /// libraryPath().
    void* resolveEntryPoint(const char* name);

    /// Canonical full file name of the library last loaded; empty before the first load. Read it
    /// once `isLoaded()` or `loadOnce` said so: it is not written again by `loadOnce`.
    const std::string& libraryPath() const { return libraryPath_; }
    bool isLoaded() const { return module_.load(std::memory_order_acquire) != nullptr; }

    KvpvtContext* createContext(std::int32_t* errorCount, std::int32_t* errorCodes) override;
    void destroyContext(KvpvtContext* context) override;
    void loadComponent(KvpvtContext* context, const char* name, std::int32_t* componentIndex,
                       std::int32_t* errorCount, std::int32_t* errorCodes) override;
    void addBipSet(KvpvtContext* context, const char* name, std::int32_t* errorCount,
                   std::int32_t* errorCodes) override;
    void addModel(KvpvtContext* context, const char* name, std::int32_t* errorCount,
                  std::int32_t* errorCodes) override;
    void loadSaltDensityModel(KvpvtContext* context, const char* name, std::int32_t* errorCount,
                              std::int32_t* errorCodes) override;
    void addPhase(KvpvtContext* context, const char* name, std::int32_t solventIndex, std::int32_t* phaseIndex,
                  std::int32_t* errorCount, std::int32_t* errorCodes) override;
    void evaluate(KvpvtContext* context, double temperatureK, double pressurePa, const double* amountsMol,
                  std::int32_t amountCount, std::int32_t* errorCount, std::int32_t* errorCodes) override;
    void phaseVolume(KvpvtContext* context, std::int32_t phaseIndex, double* volumeM3, std::int32_t* errorCount,
                     std::int32_t* errorCodes) override;

private:
    enum EntryPoint : std::size_t {
        ContextCreate,
        ContextDestroy,
        LoadComponent,
        AddBipSet,
        AddModel,
        LoadSaltDensityModel,
        AddPhase,
        Evaluate,
        PhaseVolume,
        EntryPointCount
    };

    /// The cached address of `which`, resolved by its name on first use.
    template <typename Function>
    Function entryPoint(EntryPoint which);

    /// `load` with the load lock held.
    void loadLocked(const std::string& path);

    std::mutex loadMutex_;
    std::atomic<platform::ModuleHandle> module_{nullptr};
    /// Set, with release order, once `libraryPath_` names a loaded library; `loadOnce` reads it
    /// without the lock.
    std::atomic<bool> everLoaded_{false};
    std::string libraryPath_;
    /// Filled once per entry point and kept for the life of the instance. Atomic so that threads
    /// racing on a first use store the same address without a data race.
    std::array<std::atomic<void*>, EntryPointCount> entryPoints_{};
};

}  // namespace korvane
