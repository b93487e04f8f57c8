#pragma once

#include "brinecast/BasisData.h"

#include <korvane/Brinecast.h>

namespace korvane::Brinecast::cli {

/// What the program asks of the library beyond its exported functions, to check a result
/// against the library's own model rather than a copy of it.
class LibraryBasis {
public:
    /// The density (g/cm3) the library settles for `input`: as given, 1.0 for units that need
    /// none, or computed by the engine library for a per-litre analysis that gives none. The
    /// engine's first load is not guarded against other threads: call this from one thread.
    static double density(const Input& input);
    /// The basis components and totals the library builds from `input`, and the species,
    /// charges, log K values and coefficients of its basis reaction set.
    static BasisData of(const Input& input);
};

}  // namespace korvane::Brinecast::cli
