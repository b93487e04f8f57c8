#pragma once

#include <korvane/Brinecast.h>

#include <string>
#include <vector>

namespace korvane::Brinecast::cli {

/// The activity model the user asked for: one model for every analysis, or "auto", Pitzer for
/// each analysis the Pitzer data cover and Debye–Hückel for the others.
class ActivityChoice {
public:
    /// The model chosen for one analysis, and why when auto fell back from Pitzer.
    struct Decision {
        ActivityModel model = ActivityModel::DebyeHuckel;
        bool automatic = false;
        std::vector<std::string> pitzerGaps;  ///< what the Pitzer data lack; empty unless auto fell back
        /// Under Pitzer, the minerals another model would list for the analysis that its data lack.
        std::vector<std::string> mineralsNotAvailable;
    };

    /// Auto.
    ActivityChoice() = default;
    /// Always `model`; implicit, so that a model stands wherever a choice is expected.
    ActivityChoice(ActivityModel model) : automatic_(false), model_(model) {}

    /// The choice an --activity word names: "auto", "ideal", "davies", "debye-huckel", "pitzer"
    /// (any case); InputError naming the word and the accepted ones otherwise.
    static ActivityChoice named(const std::string& word);

    bool automatic() const { return automatic_; }
    /// The fixed model; Debye–Hückel, the fallback, when automatic.
    ActivityModel model() const { return model_; }
    /// "auto" or the fixed model's word.
    std::string word() const;

    /// The model for `input`, an analysis with every component it will carry (balancing ion and
    /// the carbon of a measured alkalinity included).
    Decision decide(const Input& input) const;

private:
    bool automatic_ = true;
    ActivityModel model_ = ActivityModel::DebyeHuckel;
};

}  // namespace korvane::Brinecast::cli
