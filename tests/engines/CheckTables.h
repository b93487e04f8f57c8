#pragma once
// The reference values of the reference engine, kept as data in data/reference-engine-checks.json
// (path given by the build as BRINECAST_ENGINE_CHECKS_JSON). Each table records its source, its
// relative tolerance and its rows.

#include <rapidjson/document.h>

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

namespace checks {

inline const rapidjson::Document& document() {
    static const rapidjson::Document parsed = [] {
        std::ifstream file(BRINECAST_ENGINE_CHECKS_JSON);
        if (!file) throw std::runtime_error(std::string("cannot open ") + BRINECAST_ENGINE_CHECKS_JSON);
        std::stringstream text;
        text << file.rdbuf();
        rapidjson::Document d;
        d.Parse(text.str().c_str());
        if (d.HasParseError()) throw std::runtime_error(std::string("malformed ") + BRINECAST_ENGINE_CHECKS_JSON);
        return d;
    }();
    return parsed;
}

/// The rows of table `name`.
inline const rapidjson::Value& rows(const char* name) { return document()[name]["rows"]; }

/// The relative tolerance that table `name` states for its values.
inline double tolerance(const char* name) { return document()[name]["relativeTolerance"].GetDouble(); }

inline double number(const rapidjson::Value& row, const char* key) { return row[key].GetDouble(); }

}  // namespace checks
