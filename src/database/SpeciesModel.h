#pragma once

#include "database/ElementTable.h"
#include "database/ReactionData.h"
#include "database/ReactionRecord.h"

#include <rapidjson/fwd.h>

#include <string>
#include <vector>

namespace korvane {
namespace Brinecast {

/// The thermodynamic model of one calculation: every reaction record of the database and the
/// element table. Built afresh for every exported call and destroyed with it; nothing is cached.
class SpeciesModel {
public:
    /// Parses the embedded reaction documents: 82 records, document 1 first.
    SpeciesModel();
    /// Takes the records from `json` alone instead of the embedded documents.
    explicit SpeciesModel(const std::string& json);

    const ElementTable& elementTable() const { return elementTable_; }

    /// The records of every text, in list order, each text's records in document order.
    static std::vector<ReactionRecord> loadReactionDatabases(const std::vector<std::string>& jsonTexts);
    /// Throws KorvaneError naming the line and column of a malformed text.
    static std::vector<ReactionRecord> loadReactionsFromString(const std::string& json);
    /// Throws std::logic_error when the file cannot be opened or parsed (byte offset of the error).
    static std::vector<ReactionRecord> loadReactionsFromFile(const std::string& path);
    /// One record per element of the top-level array, names left empty.
    static std::vector<ReactionRecord> parseReactionRecords(const rapidjson::Value& document);
    /// "-1 Ca+2 -1 CO3-2 +1 CaCO3 \nlogK=3.224\n..." for reading a reaction in a log.
    static std::string toDisplayString(const ReactionData& data);

    std::vector<ReactionRecord> reactions;

private:
    ElementTable elementTable_;
    // The calculation's working fields (basis names, reaction set, equations, solution) follow here.
};

}  // namespace Brinecast
}  // namespace korvane
