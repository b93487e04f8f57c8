#pragma once
/// The Pitzer reference set: 53 brines (NaCl to 6.15 mol/kgw, seawater, formation waters, iron,
/// carbonate and sulfate brines, 0-200 degC, 1-1000 atm) and PHREEQC 3.8.9's results with
/// pitzer.dat for both single-ion conventions, as `phreeqc input-macinnes-true.pqi output.txt
/// pitzer.dat` (and -false) wrote them; README.md in that folder says how.

#include <korvane/Speciator.h>

#include <rapidjson/document.h>
#include <rapidjson/istreamwrapper.h>

#include <fstream>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace brinecast_test {

struct PitzerReferenceBrine {
    std::string name;
    korvane::Brinecast::Input input;  ///< totals in mol/kgw, T (K), P (Pa)
    bool supported = true;
    std::vector<std::string> unsupported;  ///< elements the model cannot describe
    double pH = 0.0;
    double ionicStrength = 0.0;  ///< mol/kgw
    double logWaterActivity = 0.0;
    std::map<std::string, double> molalities;  ///< mol/kgw
    std::map<std::string, double> logGammas;
    std::map<std::string, double> saturationIndices;  ///< minerals with a value only
};

inline rapidjson::Document readPitzerJson(const std::string& path) {
    std::ifstream file(path);
    if (!file) throw std::runtime_error("cannot open " + path);
    rapidjson::IStreamWrapper stream(file);
    rapidjson::Document document;
    document.ParseStream(stream);
    if (document.HasParseError()) throw std::runtime_error("not JSON: " + path);
    return document;
}

/// Every brine with the results of one convention (`macInnes`).
inline std::vector<PitzerReferenceBrine> loadPitzerReference(const std::string& directory, bool macInnes) {
    const rapidjson::Document brines = readPitzerJson(directory + "/brines.json");
    const rapidjson::Document expected =
        readPitzerJson(directory + (macInnes ? "/expected-macinnes-true.json" : "/expected-macinnes-false.json"));
    const rapidjson::Value& results = expected["results"];
    if (brines.Size() != results.Size()) throw std::runtime_error("brines and results differ in length");
    std::vector<PitzerReferenceBrine> set;
    for (rapidjson::SizeType i = 0; i < brines.Size(); ++i) {
        const rapidjson::Value& brine = brines[i];
        const rapidjson::Value& result = results[i];
        PitzerReferenceBrine entry;
        entry.name = brine["name"].GetString();
        entry.input.dllPath = "/no/engine/needed";
        entry.input.temperature = brine["T"].GetDouble();
        entry.input.pressure = brine["P"].GetDouble();
        entry.input.elements.unit = korvane::Brinecast::MolPerKgw;
        for (const auto& element : brine["elements"].GetObject())
            entry.input.elements.push_back({element.name.GetString(), element.value.GetDouble()});
        entry.supported = std::string(result["status"].GetString()) == "ok";
        if (!entry.supported) {
            for (const auto& reason : result["unsupported"].GetObject()) entry.unsupported.push_back(reason.name.GetString());
            set.push_back(std::move(entry));
            continue;
        }
        entry.pH = result["pH"].GetDouble();
        entry.ionicStrength = result["I"].GetDouble();
        entry.logWaterActivity = result["log10_aw"].GetDouble();
        for (const auto& species : result["species"].GetObject()) {
            entry.molalities[species.name.GetString()] = species.value["molality"].GetDouble();
            entry.logGammas[species.name.GetString()] = species.value["log10_gamma"].GetDouble();
        }
        for (const auto& mineral : result["SI"].GetObject()) {
            if (mineral.value.IsNumber()) entry.saturationIndices[mineral.name.GetString()] = mineral.value.GetDouble();
        }
        set.push_back(std::move(entry));
    }
    return set;
}

}  // namespace brinecast_test
