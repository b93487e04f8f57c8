// The embedded reaction documents against the reference tables: a slip in a coefficient would
// otherwise pass unnoticed into every speciation.
#include "database/SpeciesModel.h"

#include "database/TsvTable.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <unordered_map>
#include <vector>

using korvane::Brinecast::ReactionData;
using korvane::Brinecast::SpeciesModel;
using Stoich = std::unordered_map<std::string, double>;

namespace {

/// The coefficients a reaction text stands for ("2 H+" or "2HS-"): reactants negative, products
/// positive; "X = X" is {X: 1}.
Stoich stoichOf(const std::string& reaction) {
    Stoich stoich;
    double side = -1.0, count = 1.0;
    std::istringstream in(reaction);
    for (std::string term; in >> term;) {
        const std::size_t digits = term.find_first_not_of("0123456789");
        if (term == "=" || term == "+") {
            side = term == "=" ? 1.0 : side;
        } else if (digits == std::string::npos) {
            count = std::stod(term);
        } else {
            stoich[term.substr(digits)] += side * count * (digits > 0 ? std::stod(term.substr(0, digits)) : 1.0);
            count = 1.0;
        }
    }
    if (stoich.size() == 1) stoich.begin()->second = 1.0;
    return stoich;
}

/// RapidJSON's default number reading may land an ulp away from the nearest double.
void expectSameNumbers(const std::vector<double>& actual, const std::string& expected, const std::string& what) {
    const std::vector<double> numbers = brinecast_test::numbers(expected);
    ASSERT_EQ(actual.size(), numbers.size()) << what;
    for (std::size_t i = 0; i < numbers.size(); ++i) EXPECT_DOUBLE_EQ(actual[i], numbers[i]) << what << " [" << i << "]";
}

double numberOrZero(const std::string& text) { return text.empty() ? 0.0 : std::stod(text); }

}  // namespace

TEST(ReactionDocuments, EveryRecordFollowsTheReferenceTablesInOrder) {
    const SpeciesModel model;
    const auto table = brinecast_test::readTsv(BRINECAST_DATABASE_TEST_DATA "/reaction_records.tsv");
    const auto transport = brinecast_test::readTsv(BRINECAST_DW_VM_TABLE);
    ASSERT_EQ(model.reactions.size(), table.size());
    ASSERT_EQ(transport.size(), table.size());
    for (std::size_t i = 0; i < table.size(); ++i) {
        const ReactionData& data = model.reactions[i].data;
        const std::string& reaction = table[i].at("reaction");
        ASSERT_EQ(transport[i].at("reaction"), reaction) << "the two reference tables disagree on order";
        EXPECT_EQ(data.stoich, stoichOf(reaction)) << "record " << i + 1 << ": " << reaction;
        EXPECT_DOUBLE_EQ(data.logK, numberOrZero(table[i].at("log_k"))) << reaction;
        EXPECT_DOUBLE_EQ(data.deltaH, numberOrZero(table[i].at("delta_h"))) << reaction;
        expectSameNumbers(data.analytical, table[i].at("analytical"), reaction + " analytical");
        expectSameNumbers(data.gamma, table[i].at("gamma"), reaction + " gamma");
        expectSameNumbers(data.dw, transport[i].at("dw"), reaction + " dw");
        expectSameNumbers(data.Vm, transport[i].at("Vm"), reaction + " Vm");
    }
}
