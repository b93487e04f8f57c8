#pragma once
/// Example brine analyses shared by the tests and the benchmarks (tests/data/brines.json), and a
/// builder for hand-written ones.

#include <korvane/Brinecast.h>

#include <rapidjson/document.h>

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace brinecast_test {

struct NamedBrine {
    std::string name;
    korvane::Brinecast::Input input;
};

/// Every brine of the catalogue at `path`, with `dllPath` as the engine directory.
inline std::vector<NamedBrine> loadBrines(const std::string& path, const std::string& dllPath) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    rapidjson::Document document;
    if (document.Parse(text.str().c_str()).HasParseError() || !document.IsArray())
        throw std::runtime_error("The brine catalogue " + path + " is missing or not a JSON array");
    std::vector<NamedBrine> brines;
    for (const rapidjson::Value& entry : document.GetArray()) {
        NamedBrine brine{entry["name"].GetString(), {}};
        brine.input.dllPath = dllPath;
        brine.input.temperature = entry["temperatureK"].GetDouble();  // K
        for (const auto& pair : entry["elements"].GetArray()) brine.input.elements.push_back({pair[0].GetString(), pair[1].GetDouble()});
        brine.input.elements.unit = static_cast<korvane::Brinecast::ConcentUnit>(entry["unit"].GetInt());
        for (const auto& pair : entry["gases"].GetArray()) brine.input.gases.push_back({pair[0].GetString(), pair[1].GetDouble()});
        brine.input.gases.unit = korvane::Brinecast::MolPerKgw;
        brines.push_back(brine);
    }
    return brines;
}

/// An analysis in mol/kgw that needs no density engine.
inline korvane::Brinecast::Input molal(std::vector<korvane::Brinecast::NameValue> elements, double temperatureK = 298.15,
                                       std::vector<korvane::Brinecast::NameValue> gases = {}) {
    korvane::Brinecast::Input input;
    input.dllPath = "/no/engine/needed";
    input.temperature = temperatureK;  // K
    input.elements.assign(elements, korvane::Brinecast::MolPerKgw);
    input.gases.assign(gases, korvane::Brinecast::MolPerKgw);
    return input;
}

}  // namespace brinecast_test
