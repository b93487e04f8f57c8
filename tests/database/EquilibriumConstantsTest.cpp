#include "database/EquilibriumConstants.h"

#include "database/SpeciesModel.h"

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <string>
#include <vector>

using namespace korvane::Brinecast;

namespace {

/// The embedded record that forms `species`, named after it.
ReactionRecord embedded(const std::string& species) {
    static const SpeciesModel model;
    for (const ReactionRecord& record : model.reactions) {
        const auto found = record.data.stoich.find(species);
        if (found != record.data.stoich.end() && found->second > 0.0 && record.data.stoich.size() > 1)
            return ReactionRecord{species, record.data};
    }
    throw std::logic_error("no record forms " + species);
}

/// A record "X" whose stored log K and delta H must play no part once coefficients exist.
ReactionRecord analytical(std::vector<double> coefficients) {
    ReactionRecord record{"X", {}};
    record.data.stoich = {{"X", 1.0}};
    record.data.logK = record.data.deltaH = 99.0;
    record.data.analytical = std::move(coefficients);
    return record;
}

// van 't Hoff slope of 1 kcal/mol, K: 4184 J/kcal over R ln 10 (8.3144621 J/(mol K) * ln 10).
const double kVantHoffPerKcal = 4184.0 / (8.3144621 * std::log(10.0));

}  // namespace

TEST(EquilibriumConstants, WaterDissociationAtTwentyFiveDegrees) {
    // Published pKw of water at 298.15 K from the same expression: 13.9948.
    EXPECT_NEAR(logKAt(embedded("OH-"), 298.15), -13.9948, 5e-5);
}

TEST(EquilibriumConstants, AnalyticalTermsComeInTheirFixedOrder) {
    const double T = 350.0;  // K
    const double terms[] = {1.0, T, 1.0 / T, std::log10(T), 1.0 / (T * T), T * T};
    for (std::size_t i = 0; i < 6; ++i) {
        std::vector<double> coefficients(i + 1, 0.0);
        coefficients[i] = 2.0;
        EXPECT_DOUBLE_EQ(logKAt(analytical(coefficients), T), 2.0 * terms[i]) << "term " << i + 1;
    }
    EXPECT_DOUBLE_EQ(logKAt(embedded("MgCO3"), T), 0.991 + 0.00667 * T);
    EXPECT_THROW(logKAt(analytical(std::vector<double>(7, 1.0)), T), std::logic_error);
}

TEST(EquilibriumConstants, VanTHoffWithoutCoefficients) {
    const struct {
        const char* species;
        double temperatureK, expected;
    } cases[] = {
        {"CaSO4", 348.15, 2.25 + 1.325 * kVantHoffPerKcal * (1.0 / 298.15 - 1.0 / 348.15)},
        {"FeCl+", 423.15, 0.14},  // no "delta_h": constant
        {"MgOH+", 323.15, -11.44 + 15.952 * kVantHoffPerKcal * (1.0 / 298.15 - 1.0 / 323.15)},
    };
    for (const auto& c : cases)
        EXPECT_NEAR(logKAt(embedded(c.species), c.temperatureK), c.expected, 1e-12) << c.species;
    EXPECT_EQ(logKAt(embedded("CaSO4"), 298.15), 2.25);  // the reference temperature gives log_k itself
}

TEST(EquilibriumConstants, ValuesArePerFormulaUnitOfTheNamedSpecies) {
    ReactionRecord doubled{"Y", {}};
    doubled.data.stoich = {{"A", -1.0}, {"Y", 2.0}};
    doubled.data.logK = 3.0;
    ReactionRecord master{"H+", {}};
    master.data.stoich = {{"H+", 1.0}};
    const korvane::ValueArray values = logKValues(298.15, {embedded("CaSO4"), doubled, master});
    ASSERT_EQ(values.size(), 3u);
    EXPECT_DOUBLE_EQ(values[0], 2.25);
    EXPECT_DOUBLE_EQ(values[1], 1.5);
    EXPECT_EQ(values[2], 0.0);  // master species
    master.name = "";  // a record must be named after one of its own species
    EXPECT_THROW(logKValues(298.15, {master}), std::logic_error);
}
