#pragma once

#include "brinecast/readers/Analysis.h"
#include "brinecast/calculation/ChargeBalance.h"
#include "brinecast/calculation/DissolvedSolids.h"
#include "brinecast/calculation/SpeciationCheck.h"

#include <korvane/ConstraintOutcome.h>

#include <cmath>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace korvane::Brinecast::cli {

/// Everything the program reports about one analysis.
struct AnalysisResult {
    enum class Status {
        Ok,         ///< calculated, and every balance closes
        NotClosed,  ///< calculated, but a balance does not close: the numbers are no solution
        Failed,     ///< the library threw; `error` holds its message
        Invalid,    ///< the input could not be read or used; `error` says why
    };
    enum class DensitySource { Given, Engine, NotNeeded };

    struct Balancing {
        std::string element;
        double amount = 0.0;  ///< added, in the analysis' unit
        ChargeBalance before;
    };

    Analysis analysis;  ///< as calculated, after any balancing ion was added
    Status status = Status::Ok;
    std::string error;
    std::string hint;  ///< what the user can try when something failed

    double densityGcm3 = 0.0;
    DensitySource densitySource = DensitySource::NotNeeded;
    ChargeBalance charge;  ///< of `analysis`, as calculated
    std::optional<Balancing> balancing;
    DissolvedSolids solids;  ///< of `analysis`, with the density used when it is known

    /// Σ alk·m over every species, eq/kgw (the library's sum); NaN until calculated.
    double alkalinityEqPerKgw = NAN;
    /// What the measured pH, alkalinity and balancing ion imposed and derived.
    ConstraintOutcome constraints;

    double pH = NAN;
    /// How the library's solver ended: which method gave the result, its iterations and the
    /// balance errors it measured. Empty until calculated.
    std::optional<Diagnostics> solver;
    /// The activity model the calculation used and what it gave. Empty until calculated.
    struct Activities {
        ActivityModel model = ActivityModel::Ideal;
        double ionicStrengthMolPerKgw = NAN;
        double logWaterActivity = NAN;            ///< log10 a_w
        std::map<std::string, double> logGammas;  ///< log10 γ by species name
        bool automatic = false;                   ///< chosen by --activity auto
        std::vector<std::string> pitzerGaps;      ///< why auto did not choose Pitzer; empty when it did
        /// Under Pitzer, the minerals another model would list for the analysis that its data lack.
        std::vector<std::string> mineralsNotAvailable;

        /// log10 γ of `species`, NaN when the result does not list it.
        double logGamma(const std::string& species) const {
            const auto it = logGammas.find(species);
            return it == logGammas.end() ? NAN : it->second;
        }
    };
    std::optional<Activities> activities;
    SpeciationCheck::Result check;
    std::vector<std::string> warnings;

    bool calculated() const { return status == Status::Ok || status == Status::NotClosed; }
};

}  // namespace korvane::Brinecast::cli
