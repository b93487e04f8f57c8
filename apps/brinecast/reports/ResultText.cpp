#include "brinecast/reports/ResultText.h"

namespace korvane::Brinecast::cli {

std::string ResultText::status(AnalysisResult::Status status) {
    switch (status) {
        case AnalysisResult::Status::Ok: return "ok";
        case AnalysisResult::Status::NotClosed: return "not closed";
        case AnalysisResult::Status::Failed: return "failed";
        case AnalysisResult::Status::Invalid: return "invalid input";
    }
    return "unknown";
}

std::string ResultText::joined(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names) text += (text.empty() ? "" : ", ") + name;
    return text;
}

std::string ResultText::activityNote(bool automatic, const std::vector<std::string>& pitzerGaps) {
    if (!automatic) return "";
    return pitzerGaps.empty() ? "auto" : "auto: Pitzer data lack " + joined(pitzerGaps);
}

std::string ResultText::activityChoice(ActivityModel model, bool automatic, const std::vector<std::string>& pitzerGaps) {
    const std::string note = activityNote(automatic, pitzerGaps);
    return activityModel(model) + (note.empty() ? "" : " (" + note + ")");
}

std::string ResultText::densitySource(AnalysisResult::DensitySource source) {
    switch (source) {
        case AnalysisResult::DensitySource::Given: return "given";
        case AnalysisResult::DensitySource::Engine: return "engine";
        case AnalysisResult::DensitySource::NotNeeded: return "not needed";
    }
    return "unknown";
}

std::string ResultText::message(const AnalysisResult& r) {
    if (r.hint.empty() || r.error.empty()) return r.error + r.hint;
    const char last = r.error.back();
    return r.error + (last == '.' || last == '!' || last == '?' ? " " : ". ") + r.hint;
}

std::string ResultText::solver(const Diagnostics& d) {
    if (d.method == Method::Specified) return "specified";
    return d.fellBack ? "robust after specified" : "robust";
}

std::string ResultText::activityModel(ActivityModel model) {
    switch (model) {
        case ActivityModel::Ideal: return "ideal";
        case ActivityModel::Davies: return "davies";
        case ActivityModel::DebyeHuckel: return "debye-huckel";
        case ActivityModel::Pitzer: return "pitzer";
    }
    return "unknown";
}

}  // namespace korvane::Brinecast::cli
