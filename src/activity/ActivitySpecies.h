#pragma once

#include "database/ReactionRecord.h"
#include "solver/SpeciationSystem.h"

#include <vector>

namespace korvane {
namespace Brinecast {

/// Which activity-coefficient law a species of a speciation follows, with its parameters.
struct ActivitySpecies {
    enum class Law {
        Solvent,  ///< water itself: its activity is a_w, never γ·m
        Wateq,    ///< log γ = −A z² √I / (1 + a B √I) + b I, the species' own a (Angstrom) and b
        Davies,   ///< log γ = −A z² (√I / (1 + √I) − 0.3 I)
        Salting,  ///< log γ = 0.1 I, a neutral species without parameters of its own
    };
    Law law = Law::Salting;
    double chargeSquared = 0.0;
    double ionSize = 0.0;  ///< a, Angstrom
    double salting = 0.0;  ///< b, kg/mol

    /// One entry per species of `system`. With `ownParameters`, a species whose record carries
    /// "gamma" follows Wateq with them; otherwise every ion follows Davies.
    static std::vector<ActivitySpecies> of(const SpeciationSystem& system, const std::vector<ReactionRecord>& records,
                                           bool ownParameters);

    /// log10 γ at Debye–Hückel `a` and `b` (see WaterProperties), √I and I (mol/kgw).
    double logGamma(double a, double b, double rootIonicStrength, double ionicStrength) const;
};

}  // namespace Brinecast
}  // namespace korvane
