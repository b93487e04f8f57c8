#pragma once

#include <korvane/Brinecast.h>

#include <string>

namespace korvane::Brinecast::cli {

/// The density the library computes for a per-litre analysis that gives none, through the
/// engine library in `Input.dllPath`: the same calculator its input normalisation calls.
class EngineDensity {
public:
    /// Loads the engine library from `directory` unless the process holds one already; false
    /// when none of its file names loads. Safe from many threads at once (the bridge serialises
    /// loads); calling it once before the workers start saves each of them a failed retry.
    static bool load(const std::string& directory);
    /// g/cm3. Safe on several threads at once.
    static double of(const Input& input);
};

}  // namespace korvane::Brinecast::cli
