#pragma once
// The reference values of the reference engine, kept as data in data/reference-engine-checks.json
// (path given by the build as BRINECAST_ENGINE_CHECKS_JSON). Each table records its source, its
// relative tolerance and its rows.

#include <rapidjson/document.h>

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace checks {

inline const rapidjson::Document& document() {
    static const rapidjson::Document parsed = [] {
        std::ifstream file(BRINECAST_ENGINE_CHECKS_JSON);
        const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
        rapidjson::Document d;
        d.Parse<rapidjson::kParseNanAndInfFlag>(text.c_str());  // the domain table holds NaN and Infinity
        if (d.HasParseError()) throw std::runtime_error(std::string("missing or malformed ") + BRINECAST_ENGINE_CHECKS_JSON);
        return d;
    }();
    return parsed;
}

/// The rows of table `name`.
inline const rapidjson::Value& rows(const char* name) { return document()[name]["rows"]; }

inline double number(const rapidjson::Value& row, const char* key) { return row[key].GetDouble(); }

/// A flag of the row; false when the row leaves it out.
inline bool flag(const rapidjson::Value& row, const char* key) { return row.HasMember(key) && row[key].GetBool(); }

/// Expects `got` within the relative tolerance that table `table` states of its value `key` in `row`.
inline void expectRelative(double got, const char* table, const rapidjson::Value& row, const char* key) {
    const double want = number(row, key);
    std::string at;
    for (const auto& member : row.GetObject()) {
        if (member.value.IsNumber()) at += " " + std::string(member.name.GetString()) + "=" + std::to_string(member.value.GetDouble());
    }
    EXPECT_LE(std::fabs(got - want), document()[table]["relativeTolerance"].GetDouble() * std::fabs(want))
        << table << " " << key << " at" << at << ": got " << got << ", want " << want;
}

}  // namespace checks
