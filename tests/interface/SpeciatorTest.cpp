#include <korvane/Speciator.h>

#include "BrineCatalog.h"
#include "RandomBrines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <thread>
#include <typeinfo>
#include <vector>

using namespace korvane::Brinecast;

namespace {

const Speciator& speciator() {
    static const Speciator shared;
    return shared;
}

SolveOptions using_(Method method) {
    SolveOptions options;
    options.method = method;
    return options;
}

Input molal(std::vector<NameValue> elements, double temperatureK, std::vector<NameValue> gases = {}) {
    Input input;
    input.dllPath = "/no/engine/needed";
    input.temperature = temperatureK;
    input.elements.assign(elements, MolPerKgw);
    input.gases.assign(gases, MolPerKgw);
    return input;
}

bool sameBits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

/// Outputs equal to the bit: the same species in the same order with the same values.
void expectIdentical(const Output& a, const Output& b, const std::string& what) {
    EXPECT_TRUE(sameBits(a.pH, b.pH)) << what << ": pH " << a.pH << " against " << b.pH;
    ASSERT_EQ(a.species.values.size(), b.species.values.size()) << what;
    EXPECT_EQ(a.species.unit, b.species.unit) << what;
    for (std::size_t i = 0; i < a.species.values.size(); ++i) {
        EXPECT_EQ(a.species.values[i].name, b.species.values[i].name) << what << " entry " << i;
        EXPECT_TRUE(sameBits(a.species.values[i].value, b.species.values[i].value)) << what << " " << a.species.values[i].name;
    }
}

/// What a calculation throws: its type and message, or "" when it returns.
std::string failureOf(const std::function<void()>& calculation) {
    try {
        calculation();
    } catch (const std::exception& e) {
        return std::string(typeid(e).name()) + ": " + e.what();
    }
    return "";
}

/// The hypersaline waters and the zero total on which the forward-difference Jacobian fails.
const std::vector<brinecast_test::NamedBrine>& brinesRunCannotSolve() {
    static const std::vector<brinecast_test::NamedBrine> brines =
        brinecast_test::loadBrines(BRINECAST_TEST_HYPERSALINE_BRINES, "/no/engine/needed");
    return brines;
}

const Input& brineNamed(const std::string& name) {
    for (const auto& brine : brinesRunCannotSolve()) {
        if (brine.name == name) return brine.input;
    }
    throw std::runtime_error("no brine " + name + " in " BRINECAST_TEST_HYPERSALINE_BRINES);
}

}  // namespace

TEST(Speciator, SpecifiedIsRunToTheBitAndReportsItsIterations) {
    std::vector<Input> inputs;
    for (const auto& brine : brinecast_test::loadBrines(BRINECAST_TEST_BRINES, "/no/engine/needed")) inputs.push_back(brine.input);
    const std::size_t catalogue = inputs.size();
    for (const Input& input : brinecast_test::randomBrines(30, 11)) inputs.push_back(input);
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        const Input& input = inputs[i];
        Output expected;
        try {
            expected = run(input);
        } catch (const korvane::KorvaneError&) {
            continue;  // run's trial limit: Specified reports it instead (below)
        }
        const Result shared = speciator().speciate(input, using_(Method::Specified));
        expectIdentical(shared.output, expected, "Speciator");
        // The free function parses the reaction data per call, as run does: a few suffice. Auto
        // keeps what Specified gives wherever its balances close, as on the catalogue's brines.
        if (i < catalogue) {
            expectIdentical(speciate(input, using_(Method::Specified)).output, expected, "speciate");
            const Result automatic = speciator().speciate(input);
            EXPECT_EQ(automatic.diagnostics.method, Method::Specified);
            expectIdentical(automatic.output, expected, "Auto");
        }
        EXPECT_EQ(shared.diagnostics.method, Method::Specified);
        EXPECT_GT(shared.diagnostics.iterations, 0u);
    }
    const Result failed = speciator().speciate(brineNamed("nacl-3.8-calcium-398K"), using_(Method::Specified));
    EXPECT_FALSE(failed.diagnostics.converged);
    EXPECT_FALSE(failed.diagnostics.fellBack);
}

TEST(Speciator, InputErrorsAreThrownAsRunThrowsThemWhateverTheMethod) {
    Input noPath = molal({{"Na", 0.1}, {"Cl", 0.1}}, 298.15);
    noPath.dllPath.clear();
    Input noUnit = molal({{"Na", 0.1}}, 298.15);
    noUnit.elements.unit = Undefined;
    Input gasInMillimoles = molal({{"Na", 0.1}}, 298.15, {{"CO2", 0.1}});
    gasInMillimoles.gases.unit = MmolPerKgw;
    const Input inputs[] = {
        noPath, noUnit, gasInMillimoles,
        molal({{"Na", 0.1}, {"Xx", 0.1}}, 298.15),                     // "Element name not found."
        molal({{"Na", 0.1}}, 298.15, {{"N2", 0.1}}),                    // "Gas name not found!"
        molal({{"Na", 0.1}, {"Na", 0.1}}, 298.15),                      // "A repeated basis found."
        molal({{"Fe(+3)", 0.1}, {"Cl", 0.3}}, 298.15),                 // no master record for Fe+3
    };
    for (const Input& input : inputs) {
        const std::string expected = failureOf([&] { run(input); });
        ASSERT_NE(expected, "");
        for (Method method : {Method::Specified, Method::Robust, Method::Auto}) {
            EXPECT_EQ(failureOf([&] { speciator().speciate(input, using_(method)); }), expected) << static_cast<int>(method);
        }
        EXPECT_EQ(failureOf([&] { speciate(input); }), expected);
    }
}

TEST(Speciator, OptionsThatMeanNothingAreRefusedNamingTheValue) {
    SolveOptions options;
    options.tolerance = -1e-10;
    EXPECT_THROW(speciator().speciate(molal({{"Na", 0.5}, {"Cl", 0.5}}, 298.15), options), std::invalid_argument);
    options.tolerance = 1e-10;
    options.method = static_cast<Method>(7);
    EXPECT_EQ(failureOf([&] { speciator().speciate(molal({}, 298.15), options); }),
              std::string(typeid(std::invalid_argument).name()) +
                  ": Unknown solve method 7; use Method::Specified, Method::Robust or Method::Auto.");
}

TEST(Speciator, BrinesRunCannotSolveSucceedWithAutoAndSayRobust) {
    for (const auto& [name, input] : brinesRunCannotSolve()) {
        SCOPED_TRACE(name);
        EXPECT_EQ(failureOf([&] { run(input); }),
                  std::string(typeid(korvane::KorvaneError).name()) + ": Number of trials exceeded without finding a solution.");
        const Result result = speciator().speciate(input);
        EXPECT_TRUE(result.diagnostics.converged);
        EXPECT_EQ(result.diagnostics.method, Method::Robust);
        EXPECT_TRUE(result.diagnostics.fellBack);
        EXPECT_LE(std::max(result.diagnostics.massBalanceError, result.diagnostics.chargeImbalance), 1e-10);
        EXPECT_TRUE(result.output.pH > 2.0 && result.output.pH < 9.0) << result.output.pH;
    }
    // The zero total's species are listed, at 0.
    const Result zero = speciator().speciate(brineNamed("barium-listed-zero"));
    std::map<std::string, double> molality;
    for (const NameValue& entry : zero.output.species.values) molality[entry.name] = entry.value;
    EXPECT_EQ(molality.at("Ba+2"), 0.0);
    EXPECT_EQ(molality.at("BaOH+"), 0.0);
    EXPECT_GT(molality.at("Na+"), 0.09);
}

TEST(Speciator, ConcurrentCallsGiveTheSerialResults) {
    const std::vector<Input> inputs = brinecast_test::randomBrines(40, 23);
    std::vector<Result> serial;
    for (const Input& input : inputs) serial.push_back(speciator().speciate(input));
    const Speciator copy = speciator();  // copies share the parsed data
    std::vector<std::vector<Result>> perThread(4);
    std::vector<std::thread> threads;
    for (std::vector<Result>& results : perThread) {
        threads.emplace_back([&] {
            for (const Input& input : inputs) results.push_back(copy.speciate(input));
        });
    }
    for (std::thread& thread : threads) thread.join();
    for (const std::vector<Result>& results : perThread) {
        ASSERT_EQ(results.size(), serial.size());
        for (std::size_t i = 0; i < serial.size(); ++i) {
            expectIdentical(results[i].output, serial[i].output, "brine " + std::to_string(i));
            EXPECT_EQ(results[i].diagnostics.iterations, serial[i].diagnostics.iterations);
        }
    }
}

TEST(Speciator, BatchKeepsInputOrderAndReportsAFailingInputInItsSlot) {
    std::vector<Input> inputs = brinecast_test::randomBrines(70, 5);
    inputs[7] = molal({{"Na", 0.1}, {"Xx", 0.1}}, 298.15);
    inputs[40].dllPath.clear();
    for (unsigned threads : {1u, 2u, 3u, 0u}) {
        const std::vector<BatchItem> items = speciator().speciateBatch(inputs, using_(Method::Robust), threads);
        ASSERT_EQ(items.size(), inputs.size());
        EXPECT_FALSE(items[7].ok());
        EXPECT_EQ(items[7].errorMessage, "Element name not found.");
        EXPECT_THROW(std::rethrow_exception(items[7].error), std::logic_error);
        EXPECT_EQ(items[40].errorMessage, "Korvane dll path is not set.");
        EXPECT_THROW(std::rethrow_exception(items[40].error), korvane::KorvaneError);
        for (std::size_t i = 0; i < inputs.size(); ++i) {
            if (i == 7 || i == 40) continue;
            ASSERT_TRUE(items[i].ok()) << i << ": " << items[i].errorMessage;
            expectIdentical(items[i].result.output, speciator().speciate(inputs[i], using_(Method::Robust)).output,
                            "slot " + std::to_string(i) + " on " + std::to_string(threads) + " threads");
        }
    }
    EXPECT_TRUE(speciator().speciateBatch({}).empty());
}
