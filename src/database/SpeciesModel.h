#pragma once

#include "database/ElementTable.h"
#include "database/ReactionData.h"
#include "database/ReactionRecord.h"
#include "tools/ValueArray.h"

#include <rapidjson/fwd.h>

#include <memory>
#include <string>
#include <vector>

namespace korvane {
namespace Brinecast {

class BasisReactionSet;
class ChargeBalanceEquationMaker;

/// The thermodynamic model of one calculation: every reaction record of the database and the
/// element table. Built afresh for every exported call and destroyed with it; nothing is cached.
class SpeciesModel {
public:
    /// Parses the embedded reaction documents: 82 records, document 1 first.
    SpeciesModel();
    /// Takes the records from `json` alone instead of the embedded documents.
    explicit SpeciesModel(const std::string& json);
    /// Deep: the working fields are copied too.
    SpeciesModel(const SpeciesModel& other);
    SpeciesModel& operator=(const SpeciesModel& other);
    SpeciesModel(SpeciesModel&& other);
    SpeciesModel& operator=(SpeciesModel&& other);
    ~SpeciesModel();

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

    /// Diagnostic text of the solved state: "pH=", then every basis component with its species
    /// and molalities (mol/kgw). Needs a calculation to have filled the working fields.
    std::string solutionReport() const;

    std::vector<ReactionRecord> reactions;

    // Working fields of the calculation run on this model; empty until one has run, each replaced
    // by the next calculation.
    std::vector<std::string> basisNames;  ///< "H2O", "H+", then the analysis' basis species
    std::unique_ptr<BasisReactionSet> basisReactionSet;
    std::unique_ptr<ChargeBalanceEquationMaker> equationMaker;
    /// Moles of water per kg of water, then the solved free molality (mol/kgw) of basis names 1..N-1.
    ValueArray solution;

private:
    ElementTable elementTable_;
};

}  // namespace Brinecast
}  // namespace korvane
