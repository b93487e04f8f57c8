#include "activity/pitzer/PitzerDatabase.h"

#include "activity/pitzer/EmbeddedPitzerDocuments.h"

#include <rapidjson/document.h>

#include <cmath>
#include <stdexcept>

namespace korvane {
namespace Brinecast {

namespace {

constexpr double kReferenceK = 298.15;
constexpr double kReferenceWindowK = 0.001;
constexpr double kGasConstantKJ = 0.0083147;  // kJ/(mol K), as the data's van 't Hoff terms assume
constexpr double kLn10 = 2.302585092994045684;

[[noreturn]] void refuse(const std::string& record, const std::string& what) {
    throw std::logic_error("Pitzer data: " + record + " " + what +
                           "; see the \"about\" text of src/activity/pitzer/data/pitzer.json for the fields.");
}

const rapidjson::Value& member(const rapidjson::Value& record, const char* key, const std::string& name) {
    const auto it = record.FindMember(key);
    if (it == record.MemberEnd()) refuse(name, std::string("has no \"") + key + "\"");
    return it->value;
}

const rapidjson::Value& list(const rapidjson::Value& record, const char* key, const std::string& name) {
    const rapidjson::Value& value = member(record, key, name);
    if (!value.IsArray()) refuse(name, std::string("has a \"") + key + "\" that is not a list");
    return value;
}

std::string text(const rapidjson::Value& record, const char* key, const std::string& name) {
    const rapidjson::Value& value = member(record, key, name);
    if (!value.IsString()) refuse(name, std::string("has a \"") + key + "\" that is not a text");
    return value.GetString();
}

const rapidjson::Value& object(const rapidjson::Value& record, const char* key, const std::string& name) {
    const rapidjson::Value& value = member(record, key, name);
    if (!value.IsObject()) refuse(name, std::string("has a \"") + key + "\" that is not an object");
    return value;
}

double number(const rapidjson::Value& value, const std::string& name, const char* key) {
    if (!value.IsNumber()) refuse(name, std::string("has a \"") + key + "\" that is not a number");
    return value.GetDouble();
}

template <std::size_t N>
std::array<double, N> numbers(const rapidjson::Value& value, const std::string& name, const char* key) {
    if (!value.IsArray() || value.Size() > N) refuse(name, std::string("has a \"") + key + "\" that is no short list");
    std::array<double, N> out{};
    for (rapidjson::SizeType i = 0; i < value.Size(); ++i) out[i] = number(value[i], name, key);
    return out;
}

PitzerLogK readLogK(const rapidjson::Value& record, const std::string& name) {
    PitzerLogK logK;
    const auto analytic = record.FindMember("analytic");
    if (analytic != record.MemberEnd()) {
        logK.analytic = numbers<6>(analytic->value, name, "analytic");
        logK.hasAnalytic = true;
        return logK;
    }
    logK.logK25 = number(member(record, "log_k", name), name, "log_k");
    const auto deltaH = record.FindMember("delta_h_kJ");
    if (deltaH != record.MemberEnd()) logK.deltaHKJPerMol = number(deltaH->value, name, "delta_h_kJ");
    return logK;
}

PitzerParameter::Kind kindOf(const std::string& type, const std::string& name) {
    static const std::pair<const char*, PitzerParameter::Kind> kinds[] = {
        {"B0", PitzerParameter::Kind::B0},         {"B1", PitzerParameter::Kind::B1},
        {"B2", PitzerParameter::Kind::B2},         {"C0", PitzerParameter::Kind::C0},
        {"THETA", PitzerParameter::Kind::Theta},   {"LAMBDA", PitzerParameter::Kind::Lambda},
        {"ZETA", PitzerParameter::Kind::Zeta},     {"PSI", PitzerParameter::Kind::Psi}};
    for (const auto& kind : kinds) {
        if (type == kind.first) return kind.second;
    }
    refuse(name, "has the unknown type \"" + type + "\" (B0 B1 B2 C0 THETA LAMBDA ZETA PSI)");
}

}  // namespace

double PitzerLogK::at(double temperatureK) const {
    const double T = temperatureK;
    if (hasAnalytic) {
        const auto& a = analytic;
        return a[0] + a[1] * T + a[2] / T + a[3] * std::log10(T) + a[4] / (T * T) + a[5] * T * T;
    }
    return logK25 - deltaHKJPerMol * (kReferenceK - T) / (kLn10 * kGasConstantKJ * T * kReferenceK);
}

double PitzerParameter::at(double temperatureK) const {
    const auto& a = coefficients;
    const double T = temperatureK;
    if (std::fabs(T - kReferenceK) < kReferenceWindowK) return a[0];
    const double Tr = kReferenceK;
    return a[0] + a[1] * (1.0 / T - 1.0 / Tr) + a[2] * std::log(T / Tr) + a[3] * (T - Tr) + a[4] * (T * T - Tr * Tr) +
           a[5] * (1.0 / (T * T) - 1.0 / (Tr * Tr));
}

PitzerDatabase::PitzerDatabase(const std::string& json) {
    rapidjson::Document document;
    document.Parse(json.data(), json.size());
    if (document.HasParseError() || !document.IsObject())
        refuse("document", "is no JSON object (parse error at byte " + std::to_string(document.GetErrorOffset()) + ")");
    for (const rapidjson::Value& record : list(document, "species", "document").GetArray()) {
        PitzerSpecies species;
        if (!record.IsObject()) refuse("a species", "is not an object");
        species.name = text(record, "name", "a species");
        species.charge = static_cast<int>(number(member(record, "charge", species.name), species.name, "charge"));
        const auto vm = record.FindMember("vm");
        if (vm != record.MemberEnd()) {
            const auto p = numbers<10>(vm->value, species.name, "vm");
            species.volumeParameters.assign(p.begin(), p.end());
        }
        species_.push_back(std::move(species));
    }
    // Reactions second: they name master species, which may come later in the list.
    rapidjson::SizeType k = 0;
    for (const rapidjson::Value& record : document["species"].GetArray()) {
        PitzerSpecies& species = species_[k++];
        if (!record.HasMember("stoich")) continue;
        species.master = false;
        species.logK = readLogK(record, species.name);
        for (const auto& term : object(record, "stoich", species.name).GetObject()) {
            const std::string name = term.name.GetString();
            const double coefficient = number(term.value, species.name, "stoich");
            if (name == species.name) continue;
            if (name == "H2O") { species.waterCount = -coefficient; continue; }
            const std::int32_t index = find(name);
            if (index < 0 || !species_[static_cast<std::size_t>(index)].master)
                refuse(species.name, "is formed from \"" + name + "\", which is no master species of the set");
            species.contents.push_back({index, -coefficient});
        }
    }
    for (const rapidjson::Value& record : list(document, "minerals", "document").GetArray()) {
        PitzerMineral mineral;
        if (!record.IsObject()) refuse("a mineral", "is not an object");
        mineral.name = text(record, "name", "a mineral");
        mineral.logK = readLogK(record, mineral.name);
        mineral.solidVolumeCm3PerMol = number(member(record, "vm_solid", mineral.name), mineral.name, "vm_solid");
        for (const auto& term : object(record, "stoich", mineral.name).GetObject()) {
            const std::string name = term.name.GetString();
            const double coefficient = number(term.value, mineral.name, "stoich");
            if (name == "H2O") mineral.waterCoefficient = coefficient;
            else if (coefficient > 0.0) {
                const std::int32_t index = find(name);
                if (index < 0) refuse(mineral.name, "dissolves into \"" + name + "\", which is no species of the set");
                mineral.products.push_back({index, coefficient});
            }
        }
        minerals_.push_back(std::move(mineral));
    }
    for (const rapidjson::Value& record : list(document, "parameters", "document").GetArray()) {
        if (!record.IsObject()) refuse("a parameter", "is not an object");
        const std::string source = record.HasMember("source") ? text(record, "source", "a parameter") : "a parameter";
        PitzerParameter parameter;
        parameter.kind = kindOf(text(record, "type", source), source);
        const rapidjson::Value& names = member(record, "species", source);
        const bool triple = parameter.kind == PitzerParameter::Kind::Zeta || parameter.kind == PitzerParameter::Kind::Psi;
        if (!names.IsArray() || names.Size() != (triple ? 3u : 2u)) refuse(source, "names the wrong number of species");
        for (rapidjson::SizeType i = 0; i < names.Size(); ++i) {
            if (!names[i].IsString()) refuse(source, "names a species that is not a text");
            parameter.species[i] = find(names[i].GetString());
            if (parameter.species[i] < 0) refuse(source, std::string("names the unknown species ") + names[i].GetString());
        }
        parameter.coefficients = numbers<6>(member(record, "coef", source), source, "coef");
        parameters_.push_back(parameter);
    }
}

std::int32_t PitzerDatabase::find(const std::string& name) const {
    for (std::size_t i = 0; i < species_.size(); ++i) {
        if (species_[i].name == name) return static_cast<std::int32_t>(i);
    }
    return -1;
}

const PitzerDatabase& PitzerDatabase::embedded() {
    static const PitzerDatabase database(embeddedPitzerDocuments().front());
    return database;
}

}  // namespace Brinecast
}  // namespace korvane
