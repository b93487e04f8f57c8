#pragma once

#include "brinecast/Analysis.h"
#include "brinecast/ChargeBalance.h"
#include "brinecast/SpeciationCheck.h"

#include <cmath>
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

    double pH = NAN;
    /// How the library's solver ended: which method gave the result, its iterations and the
    /// balance errors it measured. Empty until calculated.
    std::optional<Diagnostics> solver;
    SpeciationCheck::Result check;
    std::vector<std::string> warnings;

    bool calculated() const { return status == Status::Ok || status == Status::NotClosed; }
};

}  // namespace korvane::Brinecast::cli
