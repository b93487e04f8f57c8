#pragma once
/// The activity model of a speciation: how the activity of each species and of water follows
/// from the molalities.

#include <cstdint>

namespace korvane {
namespace Brinecast {

/// How activities are computed from molalities.
enum class ActivityModel : std::int32_t {
    /// Every activity coefficient 1 and water activity 1: the model of `run`. Trustworthy for
    /// fresh water only; above about 0.01 mol/kgw of salt pH and complexes drift.
    Ideal = 0,
    /// Davies for every charged species, 0.1·I for neutral ones, water activity from the solute
    /// molalities: no species data needed; good to about 0.5 mol/kgw.
    Davies = 1,
    /// Extended (WATEQ) Debye–Hückel with each species' own ion size and salting coefficient,
    /// Davies where a species has none, log K corrected for pressure from the species' molar
    /// volumes. Fitted to NaCl-like waters; good to seawater and beyond for the major ions.
    DebyeHuckel = 2,
    /// Harvie–Møller–Weare virial model with the unlike-charge mixing terms and temperature- and
    /// pressure-dependent parameters, on its own species set (free ions, OH-, HCO3-, CO2, HSO4-,
    /// MgOH+, MgCO3: the virial terms carry the ion pairing). For concentrated brines up to halite
    /// saturation; refuses Zn, S(-2) and Fe(+2) with carbonate, which its parameters do not cover.
    Pitzer = 3,
};

}  // namespace Brinecast
}  // namespace korvane
