// The scale calculations of a Speciator: precipitation potential, mixing and profiles, each built
// on speciations of analyses converted to mol/kgw once.
#include <korvane/Speciator.h>

#include "interface/SpeciatorData.h"
#include "minerals/MineralSet.h"
#include "scale/MolalAnalysis.h"
#include "scale/PrecipitationSearch.h"
#include "scale/WaterMixer.h"

#include <cmath>
#include <stdexcept>
#include <string>

namespace korvane {
namespace Brinecast {

namespace {

void requireSteps(std::size_t steps, const char* what) {
    if (steps < 2)
        throw std::invalid_argument(std::string(what) + " needs at least 2 steps (both ends), not " +
                                    std::to_string(steps) + "; give for example 11.");
}

void requireCondition(double value, const char* name, const char* unit) {
    if (!(value > 0.0) || !std::isfinite(value))
        throw std::invalid_argument(std::string("ProfilePath::") + name + " is " + std::to_string(value) +
                                    "; a profile needs every end given, as a positive number in " + unit + ".");
}

/// (1 - t)·a + t·b: exactly a at t = 0 and b at t = 1.
double between(double a, double b, double t) { return (1.0 - t) * a + t * b; }

const Mineral& mineralNamed(const std::string& name) {
    for (const Mineral& mineral : MineralSet::embedded().minerals()) {
        if (mineral.name == name) return mineral;
    }
    throw std::logic_error("A result names the mineral " + name + ", which the mineral data lacks.");
}

}  // namespace

Input Speciator::molal(const Input& analysis) const { return molalAnalysis(analysis, data_->model); }

std::vector<PrecipitationPotential> Speciator::precipitationPotential(const Input& analysis,
                                                                      const SolveOptions& options) const {
    const Input brine = molal(analysis);
    const Result result = speciate(brine, options);
    const PrecipitationSearch search(
        brine, [this, &options](const Input& in) { return speciate(in, options); }, MineralSet::embedded(),
        data_->model.elementTable());
    std::vector<PrecipitationPotential> potentials;
    potentials.reserve(result.minerals.size());
    for (const MineralSaturation& s : result.minerals) potentials.push_back(search.of(mineralNamed(s.name), s.saturationIndex));
    return potentials;
}

Input Speciator::mix(const Input& first, const Input& second, double fraction, const MixingOptions& mixing) const {
    return WaterMixer(molal(first), molal(second), mixing, data_->model.elementTable()).mix(fraction);
}

std::vector<Result> Speciator::mixingSweep(const Input& first, const Input& second, std::size_t steps,
                                           const MixingOptions& mixing, const SolveOptions& options) const {
    requireSteps(steps, "A mixing sweep");
    const WaterMixer mixer(molal(first), molal(second), mixing, data_->model.elementTable());
    std::vector<Result> results;
    results.reserve(steps);
    for (std::size_t i = 0; i < steps; ++i) {
        const double fraction = static_cast<double>(i) / static_cast<double>(steps - 1);
        results.push_back(speciate(mixer.mix(fraction), options));
    }
    return results;
}

std::vector<Result> Speciator::profile(const Input& analysis, const ProfilePath& path,
                                       const SolveOptions& options) const {
    requireSteps(path.steps, "A profile");
    requireCondition(path.fromTemperature, "fromTemperature", "K");
    requireCondition(path.fromPressure, "fromPressure", "Pa");
    requireCondition(path.toTemperature, "toTemperature", "K");
    requireCondition(path.toPressure, "toPressure", "Pa");
    Input brine = molal(analysis);
    std::vector<Result> results;
    results.reserve(path.steps);
    for (std::size_t i = 0; i < path.steps; ++i) {
        const double t = static_cast<double>(i) / static_cast<double>(path.steps - 1);
        brine.temperature = between(path.fromTemperature, path.toTemperature, t);
        brine.pressure = between(path.fromPressure, path.toPressure, t);
        results.push_back(speciate(brine, options));
    }
    return results;
}

}  // namespace Brinecast
}  // namespace korvane
