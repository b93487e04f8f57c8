#include "engine/SaltDensityCalculator.h"

#include <korvane/EngineAbi.h>
#include <korvane/KorvaneError.h>

#include "engine/EngineErrorCheck.h"
#include "engine/KorvaneDll.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <stdexcept>
#include <vector>

namespace korvane {
namespace Brinecast {
namespace {

const char* const loadComponentFailed = "load component failed.\n";
const char* const addModelFailed = "Adding CPA failed. \n";
const char* const loadSaltDensityModelFailed = "Loading salt density model failed. \n";
const char* const addPhaseFailed = "adding water phase failed. \n";
const char* const evaluateFailed = "Error evaluating model. \n";
const char* const volumeFailed = "Error calculating volume. \n";

/// The error array that every engine call fills.
struct EngineReport {
    std::int32_t count = 0;
    std::int32_t codes[KVPVT_ERROR_CAPACITY] = {};
};

/// Throws KorvaneError `failure` when the engine reported an error code, keeping the engine's
/// own codes as the nested exception; then empties the report for the next call.
void throwIfFailed(EngineReport& report, const std::string& failure) {
    // An engine that claims more codes than the array holds is read only as far as the array goes.
    const std::int32_t count = std::min<std::int32_t>(report.count, KVPVT_ERROR_CAPACITY);
    report.count = 0;
    try {
        checkEngineErrors(count, report.codes);
    } catch (const KorvaneError&) {
        std::throw_with_nested(KorvaneError(failure));
    }
}

/// Releases an engine context however the calculation ends.
class ContextRelease {
public:
    ContextRelease(oldapi::IKorvanePVTContext& engine, KvpvtContext* context) : engine_(engine), context_(context) {}
    ~ContextRelease() {
        if (context_ != nullptr) engine_.destroyContext(context_);
    }
    ContextRelease(const ContextRelease&) = delete;
    ContextRelease& operator=(const ContextRelease&) = delete;

private:
    oldapi::IKorvanePVTContext& engine_;
    KvpvtContext* context_;
};

double amountOf(const SaltDensityCalculator::AmountMap& amounts, const std::string& name) {
    const auto found = amounts.find(name);
    return found == amounts.end() ? 0.0 : found->second;
}

}  // namespace

SaltDensityCalculator::SaltDensityCalculator(const Input& input, const SpeciesModel& model)
    : input_(input), model_(model) {
    if (!KorvaneDll::shared()->loadOnce(input_.dllPath)) throw std::runtime_error("Korvane dll could not be loaded");
    fillElementAmounts();
}

SaltDensityCalculator::~SaltDensityCalculator() = default;

double SaltDensityCalculator::density() {
    const double waterMolarVolume = mixtureVolume({{"WATER", 1.0}});  // m3/mol
    const double waterAmount = 0.001 / waterMolarVolume;              // mol of water in one litre
    formSalts();
    AmountMap mixture = saltAmounts_;
    mixture["WATER"] = waterAmount;
    const double volume = mixtureVolume(mixture);  // m3
    const double mass = solutionMass(waterAmount);  // g
    return mass / (volume * 1e6);                   // g/cm3
}

double SaltDensityCalculator::mixtureVolume(const AmountMap& amounts) {
    oldapi::IKorvanePVTContext& engine = *KorvaneDll::shared();
    EngineReport report;
    KvpvtContext* const context = engine.createContext(&report.count, report.codes);
    const ContextRelease release(engine, context);
    throwIfFailed(report, loadComponentFailed);
    if (context == nullptr) throw KorvaneError(loadComponentFailed);

    // The engine numbers the components; the amounts go by its numbers, not by the map's order.
    const auto componentCount = static_cast<std::int32_t>(amounts.size());
    std::vector<double> componentAmounts(amounts.size(), 0.0);  // mol
    std::int32_t water = -1;
    for (const auto& [name, amount] : amounts) {
        std::int32_t index = -1;
        engine.loadComponent(context, name.c_str(), &index, &report.count, report.codes);
        throwIfFailed(report, loadComponentFailed);
        if (index < 0 || index >= componentCount) throw KorvaneError(loadComponentFailed);
        componentAmounts[index] = amount;
        if (name == "WATER") water = index;
    }
    for (const char* set : {"LBIP1", "LBIP2", "LBIP3"}) {
        engine.addBipSet(context, set, &report.count, report.codes);
        throwIfFailed(report, "Error to add BIP set:" + std::string(set) + ".\n");
    }
    engine.addModel(context, "MCPA", &report.count, report.codes);
    throwIfFailed(report, addModelFailed);
    engine.loadSaltDensityModel(context, "MSALTDEN", &report.count, report.codes);
    throwIfFailed(report, loadSaltDensityModelFailed);
    std::int32_t phase = -1;
    engine.addPhase(context, "water", water, &phase, &report.count, report.codes);
    throwIfFailed(report, addPhaseFailed);
    engine.evaluate(context, input_.temperature, input_.pressure, componentAmounts.data(), componentCount,
                    &report.count, report.codes);
    throwIfFailed(report, evaluateFailed);
    double volume = 0.0;  // m3
    engine.phaseVolume(context, phase, &volume, &report.count, report.codes);
    throwIfFailed(report, volumeFailed);
    // A volume that no density can come from is a failure even when the engine reports none.
    if (!(volume > 0.0) || !std::isfinite(volume)) throw KorvaneError(volumeFailed);
    return volume;
}

double SaltDensityCalculator::solutionMass(double waterAmount) {
    const ElementTable& table = model_.elementTable();
    double mass = table.molecularWeight("H2O") * waterAmount;  // g
    for (const NameValue& element : input_.elements.values) {
        if (element.name != "WATER") mass += table.molarMass(element.name) * elementAmounts_[element.name];
    }
    return mass;
}

void SaltDensityCalculator::formSalts() {
    double chloride = amountOf(elementAmounts_, "Cl");
    const double bromide = amountOf(elementAmounts_, "Br");
    if (chloride + bromide == 0.0) return;
    // Deliberately sodium chloride alone: no other cation is paired and bromide forms no salt,
    // so the brine enters the density model as NaCl.
    double noBromide = 0.0;
    pairSalt("Na", chloride, noBromide, 1);
}

void SaltDensityCalculator::pairSalt(const std::string& cation, double& anionAmount, double& bromideAmount,
                                     int count) {
    const double total = anionAmount + bromideAmount;
    const auto found = elementAmounts_.find(cation);
    if (found == elementAmounts_.end() || !(total > 0.0)) return;
    const double cationAmount = found->second;
    const std::string suffix = count < 2 ? std::string() : std::to_string(count);
    if (anionAmount > 0.0) {
        double& salt = saltAmounts_[cation + "Cl" + suffix];
        salt = cationAmount * anionAmount / total;
        anionAmount -= count * salt;
    }
    if (bromideAmount > 0.0) {
        double& salt = saltAmounts_[cation + "Br" + suffix];
        salt = cationAmount * bromideAmount / total;
        bromideAmount -= count * salt;
    }
}

SaltDensityCalculator::AmountMap& SaltDensityCalculator::getSaltAmounts() { return saltAmounts_; }

void SaltDensityCalculator::fillElementAmounts() {
    const ConcentUnit unit = input_.elements.unit;
    if (unit != MmolPerL && unit != MgPerL) throw UnreacheableException("Density cannot be calculated for this unit.");
    const ElementTable& table = model_.elementTable();
    for (const NameValue& element : input_.elements.values) {
        elementAmounts_[element.name] =
            unit == MmolPerL ? element.value / 1000.0 : element.value / (table.molarMass(element.name) * 1000.0);
    }
}

SaltDensityCalculator::AmountMap& SaltDensityCalculator::getElementAmounts() { return elementAmounts_; }

}  // namespace Brinecast
}  // namespace korvane
