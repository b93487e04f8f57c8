#pragma once

#include "brinecast/BasisData.h"

#include <korvane/Brinecast.h>

namespace korvane::Brinecast::cli {

/// What a result is checked against: the library's own model of the calculation, not a copy.
class LibraryBasis {
public:
    /// The basis components and totals the library builds from `input`, and the species,
    /// charges, log K values and coefficients of its basis reaction set.
    static BasisData of(const Input& input);
};

}  // namespace korvane::Brinecast::cli
