#include "activity/ActivitySpecies.h"

#include <cstdint>

namespace korvane {
namespace Brinecast {

namespace {
constexpr double kDavies = 0.3;    // kg/mol
constexpr double kSalting = 0.1;   // kg/mol, neutral species without a fitted coefficient
}  // namespace

std::vector<ActivitySpecies> ActivitySpecies::of(const SpeciationSystem& system,
                                                 const std::vector<ReactionRecord>& records, bool ownParameters) {
    std::vector<ActivitySpecies> species(system.speciesCount());
    for (std::size_t k = 0; k < species.size(); ++k) {
        ActivitySpecies& s = species[k];
        const double z = system.charges[k];
        s.chargeSquared = z * z;
        const std::vector<double>& gamma = records[system.records[k]].data.gamma;
        if (static_cast<std::int32_t>(k) == system.masterSpecies[0]) {  // basis name 0 is water
            s.law = Law::Solvent;
        } else if (ownParameters && !gamma.empty()) {
            s.law = Law::Wateq;
            s.ionSize = gamma[0];
            s.salting = gamma.size() > 1 ? gamma[1] : 0.0;
        } else {
            s.law = z != 0.0 ? Law::Davies : Law::Salting;
        }
    }
    return species;
}

double ActivitySpecies::logGamma(double a, double b, double rootIonicStrength, double ionicStrength) const {
    switch (law) {
    case Law::Solvent:
        return 0.0;
    case Law::Wateq:
        return -a * chargeSquared * rootIonicStrength / (1.0 + ionSize * b * rootIonicStrength) + salting * ionicStrength;
    case Law::Davies:
        return -a * chargeSquared * (rootIonicStrength / (1.0 + rootIonicStrength) - kDavies * ionicStrength);
    case Law::Salting:
        return kSalting * ionicStrength;
    }
    return 0.0;
}

}  // namespace Brinecast
}  // namespace korvane
