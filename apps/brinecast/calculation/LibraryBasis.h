#pragma once

#include "brinecast/calculation/BasisData.h"

#include <korvane/ActivityModel.h>
#include <korvane/Brinecast.h>

#include <string>
#include <korvane/ConstraintOutcome.h>

#include <vector>

namespace korvane::Brinecast::cli {

/// What a result is checked against: the library's own model of the calculation, not a copy.
class LibraryBasis {
public:
    /// The basis components and totals the library builds from `input`, and the species,
    /// charges, log K values and coefficients of its basis reaction set; under Pitzer those of
    /// the Pitzer species set, which has its own species.
    static BasisData of(const Input& input, ActivityModel activity = ActivityModel::Ideal);
    /// The same with the totals a constrained calculation derived: the closing component's
    /// adjusted total and the carbon that meets a measured alkalinity, under `activity`'s set.
    static BasisData of(const Input& input, const ConstraintOutcome& outcome,
                        ActivityModel activity = ActivityModel::Ideal);

    /// Every species a calculation of `input` can report under a component: those of its basis
    /// reaction set with a coefficient on some component other than water and H+, component by
    /// component. Known before calculating, so a report can name its columns first.
    static std::vector<std::string> reportedSpecies(const Input& input, ActivityModel activity = ActivityModel::Ideal);
};

}  // namespace korvane::Brinecast::cli
