#include "minerals/MineralSet.h"

#include "activity/MolarVolume.h"
#include "activity/PressureCorrection.h"
#include "activity/WaterProperties.h"
#include "database/EmbeddedReactionDocuments.h"
#include "database/SpeciesModel.h"
#include "interface/ChargeName.h"
#include "minerals/EmbeddedMineralDocuments.h"

#include <rapidjson/document.h>

#include <array>
#include <cmath>
#include <limits>
#include <stdexcept>

namespace korvane {
namespace Brinecast {

namespace {

constexpr double kKJPerKcal = 4.184;
/// What speciesIndex answers for a name that has no master-species record.
constexpr std::int32_t kUnknownSpecies = -3;

[[noreturn]] void refuse(const std::string& mineral, const std::string& what) {
    throw std::logic_error("Mineral data: " + (mineral.empty() ? std::string("a record") : mineral) + " " + what +
                           "; each record needs \"name\", \"stoich\" (species to coefficient), \"log_k\", and may "
                           "carry \"delta_h\" with \"delta_h_unit\" kJ or kcal, \"analytical\" and \"Vm\" (cm3/mol).");
}

double number(const rapidjson::Value& record, const char* key, const std::string& mineral, double fallback) {
    const auto it = record.FindMember(key);
    if (it == record.MemberEnd()) return fallback;
    if (!it->value.IsNumber()) refuse(mineral, std::string("has a \"") + key + "\" that is not a number");
    return it->value.GetDouble();
}

}  // namespace

MineralSet::MineralSet(const std::string& json, const std::vector<ReactionRecord>& records) {
    rapidjson::Document document;
    document.Parse(json.data(), json.size());
    if (document.HasParseError() || !document.IsArray())
        refuse("", "list is not a JSON array (parse error at byte " + std::to_string(document.GetErrorOffset()) + ")");
    for (const rapidjson::Value& record : document.GetArray()) {
        Mineral mineral;
        if (!record.IsObject() || !record.HasMember("name") || !record["name"].IsString()) refuse("", "has no \"name\"");
        mineral.name = record["name"].GetString();
        if (!record.HasMember("stoich") || !record["stoich"].IsObject() || record["stoich"].MemberCount() == 0)
            refuse(mineral.name, "has no \"stoich\" object");
        for (const auto& term : record["stoich"].GetObject()) {
            if (!term.value.IsNumber()) refuse(mineral.name, "has a coefficient that is not a number");
            const std::string name = term.name.GetString();
            std::int32_t index = name == "H+"    ? Mineral::kHydrogen
                                 : name == "H2O" ? Mineral::kWater
                                                 : speciesIndex(name, records);
            if (index == kUnknownSpecies)
                refuse(mineral.name, "names \"" + name + "\", which is no master species of the reactions");
            mineral.terms.push_back({index, term.value.GetDouble()});
        }
        if (!record.HasMember("log_k")) refuse(mineral.name, "has no \"log_k\"");
        mineral.logK25 = number(record, "log_k", mineral.name, 0.0);
        mineral.deltaHKJPerMol = number(record, "delta_h", mineral.name, 0.0);
        const auto unit = record.FindMember("delta_h_unit");
        if (unit != record.MemberEnd()) {
            const std::string text = unit->value.IsString() ? unit->value.GetString() : "";
            if (text == "kcal") mineral.deltaHKJPerMol *= kKJPerKcal;
            else if (text != "kJ") refuse(mineral.name, "has a \"delta_h_unit\" other than \"kJ\" or \"kcal\"");
        } else if (record.HasMember("delta_h")) {
            refuse(mineral.name, "has a \"delta_h\" without \"delta_h_unit\"");
        }
        const auto analytical = record.FindMember("analytical");
        if (analytical != record.MemberEnd()) {
            if (!analytical->value.IsArray() || analytical->value.Size() == 0 || analytical->value.Size() > 6)
                refuse(mineral.name, "has an \"analytical\" that is not a list of 1 to 6 numbers");
            for (const auto& a : analytical->value.GetArray()) {
                if (!a.IsNumber()) refuse(mineral.name, "has an \"analytical\" that is not a list of 1 to 6 numbers");
                mineral.analytical.push_back(a.GetDouble());
            }
        }
        mineral.solidVolumeCm3PerMol = number(record, "Vm", mineral.name, 0.0);
        minerals_.push_back(std::move(mineral));
    }
}

std::int32_t MineralSet::speciesIndex(const std::string& name, const std::vector<ReactionRecord>& records) {
    for (std::size_t i = 0; i < species_.size(); ++i) {
        if (species_[i].name == name) return static_cast<std::int32_t>(i);
    }
    for (const ReactionRecord& record : records) {
        const auto& stoich = record.data.stoich;
        if (stoich.size() != 1 || stoich.begin()->first != name) continue;
        species_.push_back({name, parseCharge(name), record.data.Vm});
        return static_cast<std::int32_t>(species_.size() - 1);
    }
    return kUnknownSpecies;
}

const MineralSet& MineralSet::embedded() {
    static const MineralSet set(embeddedMineralDocuments().front(),
                                SpeciesModel::loadReactionDatabases(embeddedReactionDocuments()));
    return set;
}

std::vector<MineralSaturation> MineralSet::saturation(const Result& result, double temperatureK,
                                                      double pressurePa) const {
    // log10 activity of each aqueous species the minerals need; NaN where the brine has none.
    std::vector<double> logActivity(species_.size(), std::numeric_limits<double>::quiet_NaN());
    const auto& entries = result.output.species.values;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (!(entries[i].value > 0.0)) continue;
        for (std::size_t s = 0; s < species_.size(); ++s) {
            if (entries[i].name != species_[s].name) continue;
            const double logGamma = i < result.logActivityCoefficients.size() ? result.logActivityCoefficients[i] : 0.0;
            logActivity[s] = std::log10(entries[i].value) + logGamma;
        }
    }
    const std::vector<double> shifts = pressureShifts(result, logActivity, temperatureK, pressurePa);

    const std::array<double, 6> temperature = Mineral::temperatureTerms(temperatureK);
    std::vector<MineralSaturation> saturations;
    saturations.reserve(minerals_.size());
    for (std::size_t m = 0; m < minerals_.size(); ++m) {
        const Mineral& mineral = minerals_[m];
        double logIAP = 0.0;
        for (const Mineral::Term& term : mineral.terms) {
            const double logA = term.species == Mineral::kHydrogen ? -result.output.pH
                                : term.species == Mineral::kWater  ? result.logWaterActivity
                                                                   : logActivity[static_cast<std::size_t>(term.species)];
            logIAP += term.coefficient * logA;
        }
        if (std::isnan(logIAP)) continue;  // a component the analysis does not contain
        const double logK = mineral.logKAt(temperature) + (shifts.empty() ? 0.0 : shifts[m]);
        saturations.push_back({mineral.name, logIAP - logK, logK, logIAP});
    }
    return saturations;
}

std::vector<double> MineralSet::pressureShifts(const Result& result, const std::vector<double>& logActivity,
                                               double temperatureK, double pressurePa) const {
    // Only the Debye-Hückel model carries molar volumes; the others keep log K(T) at 1 atm for
    // their species, and the minerals follow them so that SI stays consistent with the speciation.
    if (result.activity != ActivityModel::DebyeHuckel) return {};
    const WaterProperties water = WaterProperties::at(temperatureK, pressurePa);
    const double factor = PressureCorrection::logKPerVolume(water);  // log10 K per cm3/mol
    if (factor == 0.0) return {};
    const double ionicStrength = result.ionicStrength;  // mol/kgw
    const double root = std::sqrt(ionicStrength);
    std::vector<double> volumes(species_.size(), 0.0);  // cm3/mol
    for (std::size_t s = 0; s < species_.size(); ++s) {
        if (std::isnan(logActivity[s])) continue;
        volumes[s] = MolarVolume(species_[s].volumeParameters, species_[s].charge, water).at(ionicStrength, root);
    }
    const double waterVolume = PressureCorrection::waterVolume(water);
    std::vector<double> shifts(minerals_.size(), 0.0);
    for (std::size_t m = 0; m < minerals_.size(); ++m) {
        // H+ carries no volume: every ion's volume is relative to it. A solid without a molar
        // volume counts as 0, so its dissolved ions still move log K.
        double change = -minerals_[m].solidVolumeCm3PerMol;
        for (const Mineral::Term& term : minerals_[m].terms) {
            if (term.species == Mineral::kWater) change += term.coefficient * waterVolume;
            else if (term.species >= 0) change += term.coefficient * volumes[static_cast<std::size_t>(term.species)];
        }
        shifts[m] = factor * change;
    }
    return shifts;
}

}  // namespace Brinecast
}  // namespace korvane
