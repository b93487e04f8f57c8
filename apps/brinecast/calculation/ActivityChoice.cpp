#include "brinecast/calculation/ActivityChoice.h"

#include "brinecast/readers/InputError.h"
#include "brinecast/reports/ResultText.h"

#include <algorithm>
#include <cctype>

namespace korvane::Brinecast::cli {

ActivityChoice ActivityChoice::named(const std::string& word) {
    std::string lower = word;
    std::transform(lower.begin(), lower.end(), lower.begin(), [](unsigned char c) { return std::tolower(c); });
    if (lower == "auto") return ActivityChoice();
    for (ActivityModel model : {ActivityModel::Ideal, ActivityModel::Davies, ActivityModel::DebyeHuckel,
                                ActivityModel::Pitzer}) {
        if (lower == ResultText::activityModel(model)) return ActivityChoice(model);
    }
    throw InputError("Unknown activity model \"" + word +
                     "\": use auto, debye-huckel, pitzer, davies or ideal.");
}

std::string ActivityChoice::word() const { return automatic_ ? "auto" : ResultText::activityModel(model_); }

ActivityChoice::Decision ActivityChoice::decide(const Input& input) const {
    Decision decision;
    decision.model = model_;
    decision.automatic = automatic_;
    if (!automatic_ && model_ != ActivityModel::Pitzer) return decision;
    PitzerCoverage coverage = pitzerCoverage(input);
    if (!automatic_ || coverage.covered()) {
        decision.model = ActivityModel::Pitzer;
        decision.mineralsNotAvailable = std::move(coverage.missingMinerals);
    } else {
        decision.model = ActivityModel::DebyeHuckel;
        decision.pitzerGaps = std::move(coverage.missingComponents);
    }
    return decision;
}

}  // namespace korvane::Brinecast::cli
