#pragma once

#include "brinecast/calculation/AnalysisResult.h"

#include <string>

namespace korvane::Brinecast::cli {

/// The words every report format shares for a result's states and sources.
class ResultText {
public:
    /// "ok", "not closed", "failed", "invalid input".
    static std::string status(AnalysisResult::Status status);
    /// "given", "engine", "not needed".
    static std::string densitySource(AnalysisResult::DensitySource source);
    /// The error, then the hint, as one message.
    static std::string message(const AnalysisResult& result);
    /// The solver that gave a result: "specified", "robust", or "robust after specified" when
    /// the specified solver was tried first and did not converge.
    static std::string solver(const Diagnostics& diagnostics);
    /// The activity model as the --activity option names it: "ideal", "davies", "debye-huckel".
    static std::string activityModel(ActivityModel model);
};

}  // namespace korvane::Brinecast::cli
