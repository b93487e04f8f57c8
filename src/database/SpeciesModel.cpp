#include "database/SpeciesModel.h"

#include "interface/CalculationDriver.h"
#include "solver/BasisReactionSet.h"
#include "solver/ChargeBalanceEquationMaker.h"

#include <korvane/KorvaneError.h>

#include <rapidjson/document.h>
#include <rapidjson/istreamwrapper.h>

#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace korvane {
namespace Brinecast {

namespace {

/// Each parse draws its DOM from a pool of 64 KiB chunks: one chunk holds most of a document.
constexpr std::size_t kPoolChunkBytes = 64 * 1024;
constexpr unsigned kParseFlags = rapidjson::kParseIterativeFlag;

const char* jsonTypeName(const rapidjson::Value& value) {
    switch (value.GetType()) {
    case rapidjson::kNullType: return "null";
    case rapidjson::kFalseType:
    case rapidjson::kTrueType: return "boolean";
    case rapidjson::kObjectType: return "object";
    case rapidjson::kArrayType: return "array";
    case rapidjson::kStringType: return "string";
    case rapidjson::kNumberType: return "number";
    }
    return "value";
}

std::string recordLabel(std::size_t index) { return "Reaction record " + std::to_string(index + 1); }

double numberIn(const rapidjson::Value& value, std::size_t record, const char* key) {
    if (!value.IsNumber()) {
        throw std::logic_error(recordLabel(record) + ": \"" + key + "\" holds a JSON " + jsonTypeName(value) +
                               " where a number belongs; write every coefficient as a JSON number.");
    }
    return value.GetDouble();
}

/// Numbers of an array-valued key, appended in order; a key of another type is left at its default.
void readList(const rapidjson::Value& record, const char* key, std::size_t index, std::vector<double>& list) {
    const auto member = record.FindMember(key);
    if (member == record.MemberEnd() || !member->value.IsArray()) return;
    list.reserve(member->value.Size());
    for (const rapidjson::Value& item : member->value.GetArray()) list.push_back(numberIn(item, index, key));
}

/// A number-valued key; a key of another type (string, array, null) is left at its default.
void readNumber(const rapidjson::Value& record, const char* key, double& value) {
    const auto member = record.FindMember(key);
    if (member != record.MemberEnd() && member->value.IsNumber()) value = member->value.GetDouble();
}

void readStoich(const rapidjson::Value& record, std::size_t index, ReactionData& data) {
    const auto member = record.FindMember("stoich");
    if (member == record.MemberEnd()) return;
    if (!member->value.IsObject()) {
        throw std::logic_error(recordLabel(index) + ": \"stoich\" is a JSON " + jsonTypeName(member->value) +
                               "; it must be an object from species name to coefficient.");
    }
    for (const auto& entry : member->value.GetObject()) {
        const std::string species(entry.name.GetString(), entry.name.GetStringLength());
        data.stoich[species] = numberIn(entry.value, index, "stoich");
    }
}

ReactionData readRecord(const rapidjson::Value& record, std::size_t index) {
    if (!record.IsObject()) {
        throw std::logic_error(recordLabel(index) + " is a JSON " + jsonTypeName(record) +
                               "; each element of the reaction array must be an object.");
    }
    ReactionData data;
    readStoich(record, index, data);
    readNumber(record, "log_k", data.logK);
    readNumber(record, "delta_h", data.deltaH);
    readList(record, "analytical", index, data.analytical);
    readList(record, "dw", index, data.dw);
    readList(record, "Vm", index, data.Vm);
    readList(record, "gamma", index, data.gamma);
    return data;
}

/// Line and column (both from 1) of a byte offset; every byte but a line feed is one column.
std::pair<std::size_t, std::size_t> lineAndColumn(const std::string& text, std::size_t offset) {
    std::size_t line = 1;
    std::size_t column = 1;
    for (std::size_t i = 0; i < offset && i < text.size(); ++i) {
        if (text[i] == '\n') {
            ++line;
            column = 1;
        } else {
            ++column;
        }
    }
    return {line, column};
}

}  // namespace

SpeciesModel::SpeciesModel() { reactions = loadReactionDatabases(elementTable_.documents()); }

SpeciesModel::SpeciesModel(const std::string& json) { reactions = loadReactionsFromString(json); }

namespace {
template <typename T>
std::unique_ptr<T> deepCopy(const std::unique_ptr<T>& source) {
    return source ? std::make_unique<T>(*source) : nullptr;
}
}  // namespace

SpeciesModel::SpeciesModel(const SpeciesModel& other)
    : reactions(other.reactions),
      basisNames(other.basisNames),
      basisReactionSet(deepCopy(other.basisReactionSet)),
      equationMaker(deepCopy(other.equationMaker)),
      solution(other.solution),
      elementTable_(other.elementTable_) {}

SpeciesModel& SpeciesModel::operator=(const SpeciesModel& other) {
    if (this != &other) *this = SpeciesModel(other);
    return *this;
}

SpeciesModel::SpeciesModel(SpeciesModel&& other) = default;
SpeciesModel& SpeciesModel::operator=(SpeciesModel&& other) = default;
SpeciesModel::~SpeciesModel() = default;

std::string SpeciesModel::solutionReport() const { return Brinecast::solutionReport(*this); }

std::vector<ReactionRecord> SpeciesModel::loadReactionDatabases(const std::vector<std::string>& jsonTexts) {
    std::vector<ReactionRecord> records;
    for (const std::string& text : jsonTexts) {
        std::vector<ReactionRecord> more = loadReactionsFromString(text);
        records.insert(records.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
    }
    return records;
}

std::vector<ReactionRecord> SpeciesModel::loadReactionsFromString(const std::string& json) {
    rapidjson::MemoryPoolAllocator<> pool(kPoolChunkBytes);
    rapidjson::Document document(&pool);
    document.Parse<kParseFlags>(json.data(), json.size());
    if (document.HasParseError()) {
        const auto [line, column] = lineAndColumn(json, document.GetErrorOffset());
        // No blank before "or": hosts match this text as it has always read.
        throw KorvaneError("Error parsing JSON String at line " + std::to_string(line) +
                           "or a few lines before that." + ", column " + std::to_string(column) +
                           ", Error Code=" + std::to_string(static_cast<int>(document.GetParseError())));
    }
    return parseReactionRecords(document);
}

std::vector<ReactionRecord> SpeciesModel::loadReactionsFromFile(const std::string& path) {
    std::ifstream file(path);
    if (!file.is_open()) throw std::logic_error("Failed to open file:" + path);
    rapidjson::IStreamWrapper stream(file);
    rapidjson::MemoryPoolAllocator<> pool(kPoolChunkBytes);
    rapidjson::Document document(&pool);
    document.ParseStream<kParseFlags>(stream);
    if (document.HasParseError()) {
        throw std::logic_error("Error parsing JSON file: Error character offset =" +
                               std::to_string(document.GetErrorOffset()) + ", Error Code=" +
                               std::to_string(static_cast<int>(document.GetParseError())));
    }
    return parseReactionRecords(document);
}

std::vector<ReactionRecord> SpeciesModel::parseReactionRecords(const rapidjson::Value& document) {
    if (!document.IsArray()) {
        throw std::logic_error(std::string("A reaction database is a JSON array of reaction records; this one is a JSON ") +
                               jsonTypeName(document) + ".");
    }
    std::vector<ReactionRecord> records;
    records.reserve(document.Size());
    for (rapidjson::SizeType i = 0; i < document.Size(); ++i) {
        records.push_back(ReactionRecord{std::string(), readRecord(document[i], i)});
    }
    return records;
}

std::string SpeciesModel::toDisplayString(const ReactionData& data) {
    std::ostringstream text;
    for (const auto& [species, coefficient] : data.stoich) {
        if (coefficient > 0.0) text << "+";
        text << coefficient << " " << species << " ";
    }
    text << std::endl;
    text << "logK=" << data.logK << "\n";
    text << "deltaH=" << data.deltaH << "\n";
    text << "logKCoeffs = ";
    for (const double coefficient : data.analytical) text << coefficient << " ";
    text << "\n";
    return text.str();
}

}  // namespace Brinecast
}  // namespace korvane
