#include "brinecast/readers/AnalysisJsonReader.h"

#include "brinecast/readers/AnalysisBuilder.h"
#include "brinecast/readers/ExactJsonParser.h"
#include "brinecast/readers/InputError.h"
#include "brinecast/readers/ReadLimits.h"
#include "brinecast/readers/Utf8Text.h"

#include <rapidjson/document.h>
#include <rapidjson/error/en.h>

#include <algorithm>
#include <array>

namespace korvane::Brinecast::cli {
namespace {

using rapidjson::Value;

constexpr std::array<const char*, 11> kFields{"name",  "description", "temperature", "pressure",
                                              "density", "unit",      "elements",    "gases",
                                              "pH",      "alkalinity", "balance_with"};

std::string acceptedFields() {
    std::string text;
    for (const char* f : kFields) text += std::string(text.empty() ? "" : ", ") + f;
    return text;
}

std::string fieldName(const std::string& field) { return "field \"" + field + "\""; }

/// Line and column of a byte offset, for parse errors.
std::string position(const std::string& text, std::size_t offset) {
    offset = std::min(offset, text.size());
    const auto line = 1 + std::count(text.begin(), text.begin() + offset, '\n');
    const auto lineStart = text.rfind('\n', offset == 0 ? 0 : offset - 1);
    const auto column = offset - (lineStart == std::string::npos ? 0 : lineStart + 1) + 1;
    return std::to_string(line) + ":" + std::to_string(column);
}

/// The parser keeps its own stack, so depth cannot crash it; the limit keeps a runaway file from
/// costing memory and says plainly what is wrong with it.
void requireShallow(const std::string& text, const std::string& fileName) {
    std::size_t depth = 0;
    bool inString = false;
    bool escaped = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (inString) {
            if (escaped) escaped = false;
            else if (c == '\\') escaped = true;
            else if (c == '"') inString = false;
        } else if (c == '"') {
            inString = true;
        } else if (c == '[' || c == '{') {
            if (++depth > ReadLimits::kMaxJsonDepth) {
                throw InputError(fileName + ":" + position(text, i) + ": arrays and objects are nested " +
                                 "more than " + std::to_string(ReadLimits::kMaxJsonDepth) +
                                 " deep; an analysis file needs 3 (an array of analyses, each with " +
                                 "its temperature object)");
            }
        } else if ((c == ']' || c == '}') && depth > 0) {
            --depth;
        }
    }
}

/// The parse error as a user can act on it: where, and for bad bytes, which byte.
std::string parseError(const ExactJsonParser::Outcome& parsed, const std::string& text,
                       const std::string& fileName) {
    std::size_t offset = parsed.offset;
    if (parsed.error == rapidjson::kParseErrorStringInvalidEncoding) {
        // The parser points at the text it was reading; name the byte itself.
        const auto bad = Utf8Text::firstInvalidByte(text.substr(std::min(offset, text.size())));
        if (bad) offset += *bad;
        return fileName + ":" + position(text, offset) + ": byte " + std::to_string(offset) +
               " is not valid UTF-8; save the file as UTF-8 (names may hold accents, written in "
               "UTF-8)";
    }
    return fileName + ":" + position(text, offset) +
           ": not valid JSON: " + rapidjson::GetParseError_En(parsed.error);
}

std::string stringField(const AnalysisBuilder& b, const Value& v, const std::string& field) {
    if (!v.IsString()) b.fail(fieldName(field), "must be a text in double quotes");
    return std::string(v.GetString(), v.GetStringLength());
}

double numberField(const AnalysisBuilder& b, const Value& v, const std::string& where) {
    if (!v.IsNumber()) b.fail(where, "must be a number (without quotes)");
    return v.GetDouble();
}

std::string exampleUnit(const std::string& field) {
    if (field == "temperature") return "\xC2\xB0" "C";
    return field == "alkalinity" ? "mg/L as HCO3-" : "bar";
}

/// {"value": 25, "unit": "°C"}
void quantity(AnalysisBuilder& b, const Value& v, const std::string& field,
              void (AnalysisBuilder::*set)(double, const std::string&, const std::string&,
                                           const std::string&)) {
    const std::string where = fieldName(field);
    if (!v.IsObject() || !v.HasMember("value") || !v.HasMember("unit") || v.MemberCount() != 2) {
        b.fail(where, "must be an object with a value and its unit, as {\"value\": 25, "
                      "\"unit\": \"" + exampleUnit(field) +
                          "\"}");
    }
    const double value = numberField(b, v["value"], where + " value");
    (b.*set)(value, stringField(b, v["unit"], field + " unit"), where, where);
}

/// {"Na+": 10890, ...}, in file order.
void amounts(AnalysisBuilder& b, const Value& v, const std::string& field,
             void (AnalysisBuilder::*add)(const std::string&, double, const std::string&)) {
    if (!v.IsObject()) {
        b.fail(fieldName(field), "must be an object of names and amounts, as {\"Na+\": 10890, "
                                 "\"Cl-\": 19766}");
    }
    for (const auto& m : v.GetObject()) {
        const std::string name(m.name.GetString(), m.name.GetStringLength());
        const std::string where = fieldName(field) + " entry \"" + name + "\"";
        (b.*add)(name, numberField(b, m.value, where), where);
    }
}

Analysis readOne(const ComponentNames& names, const Value& object, const std::string& source,
                 const std::string& defaultName) {
    AnalysisBuilder b(names, source, defaultName);
    if (!object.IsObject()) {
        b.fail("analysis", "must be a JSON object with the fields " + acceptedFields());
    }
    std::vector<std::string> seen;
    for (const auto& m : object.GetObject()) {
        const std::string field(m.name.GetString(), m.name.GetStringLength());
        if (std::find(seen.begin(), seen.end(), field) != seen.end()) {
            b.fail(fieldName(field), "is given twice; give each field once");
        }
        seen.push_back(field);
        if (field == "name") {
            b.name(stringField(b, m.value, field));
        } else if (field == "description") {
            b.description(stringField(b, m.value, field));
        } else if (field == "temperature") {
            quantity(b, m.value, field, &AnalysisBuilder::temperature);
        } else if (field == "pressure") {
            quantity(b, m.value, field, &AnalysisBuilder::pressure);
        } else if (field == "density") {
            b.density(numberField(b, m.value, fieldName(field)), fieldName(field));
        } else if (field == "unit") {
            b.unit(stringField(b, m.value, field), fieldName(field));
        } else if (field == "pH") {
            b.measuredPH(numberField(b, m.value, fieldName(field)), fieldName(field));
        } else if (field == "alkalinity") {
            quantity(b, m.value, field, &AnalysisBuilder::alkalinity);
        } else if (field == "balance_with") {
            b.balanceWith(stringField(b, m.value, field), fieldName(field));
        } else if (field == "elements") {
            amounts(b, m.value, field, &AnalysisBuilder::element);
        } else if (field == "gases") {
            amounts(b, m.value, field, &AnalysisBuilder::gas);
        } else {
            b.fail(fieldName(field), "is not a field of an analysis; use " + acceptedFields());
        }
    }
    if (!object.HasMember("elements") && !object.HasMember("gases")) {
        b.fail(fieldName("elements"), "missing; give the analysis as {\"Na+\": 10890, ...}");
    }
    return b.build();
}

std::string stem(const std::string& fileName) {
    const auto slash = fileName.find_last_of('/');
    std::string base = slash == std::string::npos ? fileName : fileName.substr(slash + 1);
    const auto dot = base.find_last_of('.');
    return dot == std::string::npos || dot == 0 ? base : base.substr(0, dot);
}

}  // namespace

std::vector<Analysis> AnalysisJsonReader::read(const std::string& text,
                                               const std::string& fileName) const {
    if (text.find_first_not_of(" \t\r\n") == std::string::npos) {
        throw InputError(fileName + ": the file is empty; it should hold one analysis as a "
                                    "JSON object, or an array of them");
    }
    if (text.size() > ReadLimits::kMaxFileBytes) {
        throw InputError(fileName + ": the file holds " + std::to_string(text.size()) +
                         " bytes, more than the " + std::to_string(ReadLimits::kMaxFileBytes) +
                         " an analysis file may; split it into smaller files");
    }
    requireShallow(text, fileName);
    // Correctly rounded numbers: the numbers this program writes must read back to the same doubles.
    rapidjson::Document document;
    const ExactJsonParser::Outcome parsed = ExactJsonParser::parse(document, text.c_str(), text.size());
    if (parsed.error != rapidjson::kParseErrorNone) throw InputError(parseError(parsed, text, fileName));
    std::vector<Analysis> analyses;
    if (!document.IsArray()) {
        analyses.push_back(readOne(names_, document, fileName, stem(fileName)));
        return analyses;
    }
    if (document.Empty()) {
        throw InputError(fileName + ": the array holds no analysis; put one JSON object per "
                                    "analysis in it");
    }
    if (document.Size() > ReadLimits::kMaxAnalyses) {
        throw InputError(fileName + ": the array holds " + std::to_string(document.Size()) +
                         " analyses, more than the " + std::to_string(ReadLimits::kMaxAnalyses) +
                         " one file may; split it into smaller files");
    }
    for (rapidjson::SizeType i = 0; i < document.Size(); ++i) {
        const std::string number = std::to_string(i + 1);
        analyses.push_back(readOne(names_, document[i], fileName + " analysis " + number,
                                   stem(fileName) + " " + number));
    }
    return analyses;
}

}  // namespace korvane::Brinecast::cli
