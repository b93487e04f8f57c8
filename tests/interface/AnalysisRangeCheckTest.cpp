// What a host gets from speciate for an analysis that is no brine: a refusal that names the value
// and the range, never a result; and what stays accepted at the edges of the range.
#include "SharedSpeciator.h"
#include <korvane/Speciator.h>

#include "BrineCatalog.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

using namespace korvane::Brinecast;
using brinecast_test::molal;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

using brinecast_test::speciator;

Input withConditions(double temperatureK, double pressurePa) {
    Input input = molal({{"Na", 0.5}, {"Cl", 0.5}}, temperatureK);
    input.pressure = pressurePa;
    return input;
}

/// Sodium chloride at `amount` in `unit`, with the density (g/cm3) given so no engine is needed.
Input salt(double amount, ConcentUnit unit, double densityGPerCm3 = 1.0) {
    Input input = molal({{"Na", amount}, {"Cl", amount}});
    input.elements.unit = unit;
    input.density = densityGPerCm3;
    return input;
}

Input withAmount(const char* element, double amount) { return molal({{"Na", 0.5}, {"Cl", 0.5}, {element, amount}}); }

/// The what() of the std::invalid_argument that `speciate` throws, or what went otherwise.
std::string refusalOf(const Input& input, Method method) {
    SolveOptions options;
    options.method = method;
    try {
        speciator().speciate(input, options);
    } catch (const std::invalid_argument& e) {
        return e.what();
    } catch (const std::exception& e) {
        return std::string("not invalid_argument: ") + e.what();
    }
    return "accepted";
}

}  // namespace

TEST(AnalysisRangeCheck, AnalysesNoDataDescribeAreRefusedNamingValueAndRange) {
    Input gasNaN = molal({{"Na", 0.5}, {"Cl", 0.5}}, 298.15, {{"CO2", kNaN}});
    Input unknownAndHot = molal({{"Na", 0.5}, {"Xx", 0.5}}, 1000.0);  // the range is checked first
    Input nanDensity = salt(1000.0, MgPerL, kNaN);
    const struct {
        const char* what;
        Input input;
        std::vector<std::string> fragments;
    } rows[] = {
        {"far below the data", withConditions(100.0, 0.0), {"100 K", "273.15 to 473.15 K"}},
        {"-40 degC", withConditions(233.15, 0.0), {"233.15 K", "273.15"}},
        {"just above 200 degC", withConditions(473.2, 0.0), {"473.2 K", "473.15"}},
        {"1000 K", withConditions(1000.0, 0.0), {"1000 K"}},
        {"1e308 K", withConditions(1e308, 0.0), {"1e+308 K"}},
        {"temperature NaN", withConditions(kNaN, 0.0), {"nan K", "273.15 to 473.15 K"}},
        {"temperature infinite", withConditions(kInf, 0.0), {"inf K"}},
        {"a hair past 1000 atm", withConditions(298.15, 101325001.0), {"101325001 Pa", "101325000 Pa"}},
        {"pressure NaN", withConditions(298.15, kNaN), {"nan Pa"}},
        {"pressure infinite", withConditions(298.15, kInf), {"inf Pa"}},
        {"density NaN", nanDensity, {"Density nan g/cm3"}},
        {"negative amount", withAmount("Ca", -1e-3), {"\"Ca\"", "-0.001 mol/kgw", "0 or more"}},
        {"NaN amount", withAmount("K", kNaN), {"\"K\"", "nan"}},
        {"infinite amount", withAmount("K", kInf), {"\"K\"", "inf"}},
        {"NaN gas", gasNaN, {"Gas \"CO2\"", "nan"}},
        {"1e308 mg/L of salt", salt(1e308, MgPerL), {"weigh 1.9999999999999998e+302 g/cm3", "mg/L"}},
        {"salt as heavy as the solution", salt(5e5, MgPerL), {"weigh 1 g/cm3", "(1 g/cm3)"}},
        {"mg/kg past a million", salt(6e5, MgPerKg), {"kg per kg of solution", "mg/kg"}},
        {"mmol/L heavier than the solution", salt(3e4, MmolPerL), {"g/cm3", "mmol/L"}},
        {"1e6 mg/L of Na in a dense brine", salt(1e6, MgPerL, 3.0), {"mol/kgw of dissolved", "beyond the 30"}},
        {"20 mol/kgw NaCl", salt(20.0, MolPerKgw), {"40 mol/kgw", "30 mol/kgw"}},
        {"range before names", unknownAndHot, {"1000 K"}},
    };
    for (const auto& row : rows) {
        for (Method method : {Method::Specified, Method::Robust, Method::Auto}) {
            const std::string refusal = refusalOf(row.input, method);
            for (const std::string& fragment : row.fragments)
                EXPECT_NE(refusal.find(fragment), std::string::npos) << row.what << ": " << refusal;
        }
    }
    // The free function is the same calculation.
    EXPECT_THROW(speciate(withConditions(1000.0, 0.0)), std::invalid_argument);
}

TEST(AnalysisRangeCheck, EdgesOfTheRangeAndNotGivenConditionsAreAccepted) {
    Input coldest = withConditions(273.15, 0.0);
    Input hottestLowPressure = withConditions(473.15, 1e5);  // the models raise it to boiling
    Input deepest = withConditions(350.0, 1000.0 * 101325.0);
    Input notGiven = withConditions(0.0, -1.0);  // 298.15 K and 101325 Pa
    Input negativeKelvin = withConditions(-40.0, 0.0);
    Input halite = salt(6.5, MolPerKgw);  // past halite saturation: 13 mol/kgw of elements
    Input zeroAmounts = molal({{"Na", 0.0}, {"Cl", 0.0}, {"Ca", 0.0}});
    Input onlyGasPerLitre = molal({}, 298.15, {{"CO2", 0.01}});  // no elements: no density to weigh against
    onlyGasPerLitre.elements.unit = MgPerL;
    for (const Input& input :
         {coldest, hottestLowPressure, deepest, notGiven, negativeKelvin, halite, zeroAmounts, onlyGasPerLitre}) {
        const Result result = speciator().speciate(input);
        EXPECT_TRUE(result.diagnostics.converged) << input.temperature << " K, " << input.pressure << " Pa";
    }
    const Result defaulted = speciator().speciate(notGiven);
    EXPECT_EQ(defaulted.output.pH, speciator().speciate(withConditions(298.15, 101325.0)).output.pH);
}

// run keeps its own behaviour: none of the refusals above reaches it.
TEST(AnalysisRangeCheck, RunRefusesNothingNew) {
    for (const Input& input : {withConditions(1000.0, 0.0), withConditions(298.15, 1e9), withAmount("Ca", -1e-3),
                               salt(20.0, MolPerKgw)}) {
        try {
            run(input);
        } catch (const std::invalid_argument& e) {
            ADD_FAILURE() << "run refused " << input.temperature << " K: " << e.what();
        } catch (const std::exception&) {
            // the solver's own failures (trial limit) are run's, as before
        }
    }
}
