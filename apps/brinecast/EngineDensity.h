#pragma once

#include <korvane/Brinecast.h>

namespace korvane::Brinecast::cli {

/// The density the library computes for a per-litre analysis that gives none, through the
/// engine library in `Input.dllPath`: the same calculator its input normalisation calls.
class EngineDensity {
public:
    /// g/cm3. The engine's first load is not guarded against other threads: call this from one
    /// thread, before any calculation runs on others.
    static double of(const Input& input);
};

}  // namespace korvane::Brinecast::cli
