#pragma once
/// The activity reference set: 61 brines (fresh water to 6 mol/kgw, 0-200 degC, 1-1000 atm) and
/// PHREEQC 3.8's results for the same equations and reaction data, as written by
/// `phreeqc activity.pqi activity.out dh.dat` and `python3 sel_to_json.py` in that folder
/// (its README.md says how; model.md is the model).

#include <korvane/Brinecast.h>

#include <rapidjson/document.h>
#include <rapidjson/istreamwrapper.h>

#include <fstream>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace brinecast_test {

struct ActivityReferenceBrine {
    std::string name;
    korvane::Brinecast::Input input;  ///< totals in mol/kgw, T (K), P (Pa)
    double pH = 0.0;
    double ionicStrength = 0.0;     ///< mol/kgw
    double logWaterActivity = 0.0;
    std::map<std::string, double> molalities;  ///< mol/kgw, every species but water
    std::map<std::string, double> logGammas;
    std::map<std::string, double> water;       ///< "A", "B", "Av", "eps_r", "rho0", "kappa0", "QBrn", "P_atm"
    std::map<std::string, double> saturationIndices;  ///< per mineral; absent when a component is missing
    std::map<std::string, double> mineralLogKs;       ///< log10 K of each mineral listed above
};

inline rapidjson::Document readJson(const std::string& path) {
    std::ifstream file(path);
    if (!file) throw std::runtime_error("cannot open " + path);
    rapidjson::IStreamWrapper stream(file);
    rapidjson::Document document;
    document.ParseStream(stream);
    if (document.HasParseError() || !document.IsArray()) throw std::runtime_error("not a JSON list: " + path);
    return document;
}

inline std::map<std::string, double> numbers(const rapidjson::Value& object) {
    std::map<std::string, double> values;
    for (auto it = object.MemberBegin(); it != object.MemberEnd(); ++it) {
        if (it->value.IsNumber()) values[it->name.GetString()] = it->value.GetDouble();
    }
    return values;
}

/// Every brine of `directory`/brines.json with its results from expected.json.
inline std::vector<ActivityReferenceBrine> loadActivityReference(const std::string& directory) {
    const rapidjson::Document brines = readJson(directory + "/brines.json");
    const rapidjson::Document expected = readJson(directory + "/expected.json");
    if (brines.Size() != expected.Size()) throw std::runtime_error("brines.json and expected.json differ in length");
    std::vector<ActivityReferenceBrine> set;
    for (rapidjson::SizeType i = 0; i < brines.Size(); ++i) {
        const rapidjson::Value& brine = brines[i];
        const rapidjson::Value& result = expected[i];
        ActivityReferenceBrine entry;
        entry.name = brine["name"].GetString();
        entry.input.dllPath = "/no/engine/needed";
        entry.input.temperature = brine["T"].GetDouble();
        entry.input.pressure = brine["P"].GetDouble();
        entry.input.elements.unit = korvane::Brinecast::MolPerKgw;
        for (const auto& element : numbers(brine["elements"])) entry.input.elements.push_back({element.first, element.second});
        entry.pH = result["pH"].GetDouble();
        entry.ionicStrength = result["I"].GetDouble();
        entry.logWaterActivity = result["log_aw"].GetDouble();
        entry.molalities = numbers(result["species"]);
        entry.logGammas = numbers(result["log_gamma"]);
        entry.water = numbers(result["diag"]);
        entry.saturationIndices = numbers(result["si"]);
        entry.mineralLogKs = numbers(result["log_k_mineral"]);
        set.push_back(std::move(entry));
    }
    return set;
}

inline const std::vector<ActivityReferenceBrine>& activityReference() {
    static const std::vector<ActivityReferenceBrine> set = loadActivityReference(BRINECAST_ACTIVITY_REFERENCE);
    return set;
}

}  // namespace brinecast_test
