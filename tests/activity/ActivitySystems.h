#pragma once
/// Speciation systems of the embedded reaction data for the activity-model tests.

#include "database/SpeciesModel.h"
#include "solver/ReactionIndex.h"
#include "solver/SpeciationSystem.h"

#include <cstddef>
#include <string>
#include <vector>

namespace brinecast_test {

inline const korvane::Brinecast::SpeciesModel& speciesModel() {
    static const korvane::Brinecast::SpeciesModel model;
    return model;
}

/// The system of a seawater-like brine: every species its masters form, at `temperatureK` (K).
inline korvane::Brinecast::SpeciationSystem seawaterSystem(double temperatureK) {
    static const korvane::Brinecast::ReactionIndex index(speciesModel().reactions);
    return index.select({"H2O", "H+", "Na+", "K+", "Ca+2", "Mg+2", "Cl-", "CO3-2", "SO4-2"}, temperatureK);
}

/// Position of `name` in `system`, or its species count.
inline std::size_t speciesIndex(const korvane::Brinecast::SpeciationSystem& system, const std::string& name) {
    for (std::size_t k = 0; k < system.speciesCount(); ++k) {
        if (*system.speciesNames[k] == name) return k;
    }
    return system.speciesCount();
}

}  // namespace brinecast_test
