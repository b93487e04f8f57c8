#pragma once

#include <korvane/Brinecast.h>

#include <string>

namespace korvane::Brinecast::cli {

/// The density the library computes for a per-litre analysis that gives none, through the
/// engine library in `Input.dllPath`: the same calculator its input normalisation calls.
class EngineDensity {
public:
    /// Loads the engine library from `directory` unless the process holds one already; false
    /// when none of its file names loads. The load is not guarded against other threads: call
    /// this on one thread before densities are asked for on several.
    static bool load(const std::string& directory);
    /// g/cm3. Safe on several threads once `load` succeeded; before that, on one thread only.
    static double of(const Input& input);
};

}  // namespace korvane::Brinecast::cli
