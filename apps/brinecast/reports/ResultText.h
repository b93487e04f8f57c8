#pragma once

#include "brinecast/calculation/AnalysisResult.h"

#include <string>
#include <vector>

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
    /// How --activity auto chose: "" for a model the user named, "auto" when it chose Pitzer,
    /// "auto: Pitzer data lack Zn, S(-2)" when it fell back to Debye–Hückel.
    static std::string activityNote(bool automatic, const std::vector<std::string>& pitzerGaps);
    /// The model with that note: "pitzer (auto)", "debye-huckel (auto: Pitzer data lack Zn)", "davies".
    static std::string activityChoice(ActivityModel model, bool automatic, const std::vector<std::string>& pitzerGaps);
    /// "Siderite, Strontianite", for the minerals a Pitzer result cannot list.
    static std::string joined(const std::vector<std::string>& names);
};

}  // namespace korvane::Brinecast::cli
