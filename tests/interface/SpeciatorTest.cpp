#include "SharedSpeciator.h"
#include <korvane/Speciator.h>

#include "BrineCatalog.h"
#include "RandomBrines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <typeinfo>
#include <vector>

using namespace korvane::Brinecast;
using brinecast_test::molal;

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr std::size_t kSweepBrines = 300;  // the sanitizers slow every calculation tenfold or more
#else
constexpr std::size_t kSweepBrines = 3000;
#endif

using brinecast_test::speciator;

SolveOptions using_(Method method) {
    SolveOptions options;
    options.method = method;
    return options;
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

std::map<std::string, double> molalities(const Output& output) {
    std::map<std::string, double> byName;
    for (const NameValue& entry : output.species.values) byName[entry.name] = entry.value;
    return byName;
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
            const Result automatic = speciator().speciate(input, using_(Method::Auto));
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
    Input noPath = molal({{"Na", 0.1}, {"Cl", 0.1}});
    noPath.dllPath.clear();
    Input noUnit = molal({{"Na", 0.1}});
    noUnit.elements.unit = Undefined;
    Input gasInMillimoles = molal({{"Na", 0.1}}, 298.15, {{"CO2", 0.1}});
    gasInMillimoles.gases.unit = MmolPerKgw;
    const Input inputs[] = {
        noPath, noUnit, gasInMillimoles,
        molal({{"Na", 0.1}, {"Xx", 0.1}}),               // "Element name not found."
        molal({{"Na", 0.1}}, 298.15, {{"N2", 0.1}}),     // "Gas name not found!"
        molal({{"Na", 0.1}, {"Na", 0.1}}),               // "A repeated basis found."
        molal({{"Fe(+3)", 0.1}, {"Cl", 0.3}}),           // no master record for Fe+3
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
    EXPECT_THROW(speciator().speciate(molal({{"Na", 0.5}, {"Cl", 0.5}}), options), std::invalid_argument);
    options.tolerance = 1e-10;
    options.method = static_cast<Method>(7);
    EXPECT_EQ(failureOf([&] { speciator().speciate(molal({}), options); }),
              std::string(typeid(std::invalid_argument).name()) +
                  ": Unknown solve method 7; use Method::Specified, Method::Robust or Method::Auto.");
}

TEST(Speciator, BrinesRunCannotSolveSucceedWithAutoAndSayRobust) {
    for (const auto& [name, input] : brinesRunCannotSolve()) {
        SCOPED_TRACE(name);
        EXPECT_EQ(failureOf([&] { run(input); }),
                  std::string(typeid(korvane::KorvaneError).name()) + ": Number of trials exceeded without finding a solution.");
        const Result result = speciator().speciate(input, using_(Method::Auto));
        EXPECT_TRUE(result.diagnostics.converged);
        EXPECT_EQ(result.diagnostics.method, Method::Robust);
        EXPECT_TRUE(result.diagnostics.fellBack);
        // The default goes straight to the robust solver: the same result, no detour.
        const Result direct = speciator().speciate(input);
        EXPECT_EQ(direct.diagnostics.method, Method::Robust);
        EXPECT_FALSE(direct.diagnostics.fellBack);
        expectIdentical(direct.output, result.output, "default against Auto");
        EXPECT_LE(std::max(result.diagnostics.massBalanceError, result.diagnostics.chargeImbalance), 1e-10);
        EXPECT_TRUE(result.output.pH > 2.0 && result.output.pH < 9.0) << result.output.pH;
    }
    // The zero total's species are listed, at 0.
    const std::map<std::string, double> molality = molalities(speciator().speciate(brineNamed("barium-listed-zero")).output);
    EXPECT_EQ(molality.at("Ba+2"), 0.0);
    EXPECT_EQ(molality.at("BaOH+"), 0.0);
    EXPECT_GT(molality.at("Na+"), 0.09);
}

// Threads give the serial results to the bit, in input order; a failing input fails its slot only.
TEST(Speciator, BatchKeepsInputOrderAndReportsAFailingInputInItsSlot) {
    std::vector<Input> inputs = brinecast_test::randomBrines(70, 5);
    inputs[7] = molal({{"Na", 0.1}, {"Xx", 0.1}});
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
            const Result serial = speciator().speciate(inputs[i], using_(Method::Robust));
            expectIdentical(items[i].result.output, serial.output, "slot " + std::to_string(i) + " on " + std::to_string(threads) + " threads");
            EXPECT_EQ(items[i].result.diagnostics.iterations, serial.diagnostics.iterations);
        }
    }
    EXPECT_TRUE(speciator().speciateBatch({}).empty());
}

// A seeded sweep: the robust solver converges on every brine and agrees with the specified
// solver wherever that converges.
TEST(Speciator, RobustConvergesOnEveryRandomBrineAndAgreesWithSpecifiedWhereThatConverges) {
    const SolveOptions robust = using_(Method::Robust);
    std::size_t specifiedConverged = 0;
    const std::vector<Input> brines = brinecast_test::randomBrines(kSweepBrines, 20261122);
    for (std::size_t b = 0; b < brines.size(); ++b) {
        const Result r = speciator().speciate(brines[b], robust);
        SCOPED_TRACE(testing::Message() << "brine " << b << " at " << brines[b].temperature << " K");
        ASSERT_TRUE(r.diagnostics.converged) << r.diagnostics.iterations << " iterations";
        EXPECT_LE(r.diagnostics.massBalanceError, robust.tolerance);
        EXPECT_LE(r.diagnostics.chargeImbalance, robust.tolerance);

        const Result s = speciator().speciate(brines[b], using_(Method::Specified));
        if (!s.diagnostics.converged) continue;
        ++specifiedConverged;
        EXPECT_NEAR(r.output.pH, s.output.pH, 1e-8);
        const std::map<std::string, double> robustMolality = molalities(r.output);
        ASSERT_EQ(robustMolality.size(), molalities(s.output).size());
        for (const auto& [name, value] : molalities(s.output)) {
            if (value > 1e-15) {
                EXPECT_NEAR(robustMolality.at(name) / value, 1.0, 1e-7) << name;
            }
        }
    }
    // Specified must still be a real check: it converges on a good part of the sweep.
    EXPECT_GT(specifiedConverged, kSweepBrines / 4);
    std::printf("Specified converged on %zu of %zu brines\n", specifiedConverged, kSweepBrines);
}

// The reactions a basis list picks are kept per thread and reused; a bounded number of lists is
// kept, so with many more lists than that, lists come and go. Whatever the cache holds, every
// analysis must come out as from a Speciator that has seen nothing before, on one thread or two,
// also when a list comes back at another temperature.
TEST(Speciator, ReusedBasisListsGiveWhatAFreshSpeciatorGives) {
#if defined(__SANITIZE_ADDRESS__)
    constexpr std::size_t kBrines = 80;
#else
    constexpr std::size_t kBrines = 240;  // random element subsets: well over 64 distinct lists
#endif
    const std::vector<Input> brines = brinecast_test::randomBrines(kBrines, 424242);
    std::vector<Input> inputs = brines;  // every list once, then again in reverse, at another temperature
    for (std::size_t b = brines.size(); b-- > 0;) {
        inputs.push_back(brines[b]);
        // 10 K towards the middle, so the brine stays inside the data's temperature range.
        if (b % 3 == 0) inputs.back().temperature += inputs.back().temperature < 373.15 ? 10.0 : -10.0;  // K
    }
    std::vector<Result> fresh;
    for (const Input& input : inputs) fresh.push_back(Speciator().speciate(input));
    const Speciator reused;
    for (unsigned threads : {1u, 2u}) {
        const std::vector<BatchItem> items = reused.speciateBatch(inputs, {}, threads);
        for (std::size_t i = 0; i < inputs.size(); ++i) {
            ASSERT_TRUE(items[i].ok()) << i << ": " << items[i].errorMessage;
            expectIdentical(items[i].result.output, fresh[i].output,
                            "input " + std::to_string(i) + " on " + std::to_string(threads) + " threads");
            EXPECT_EQ(items[i].result.diagnostics.iterations, fresh[i].diagnostics.iterations);
        }
    }
}

// Whatever the method, converged means a result made of numbers that closes its balances.
TEST(Speciator, ConvergedMeansFiniteAndClosedWhateverTheMethod) {
    for (const Input& brine : brinecast_test::randomBrines(60, 424242)) {
        for (Method method : {Method::Specified, Method::Robust, Method::Auto}) {
            SolveOptions options;
            options.method = method;
            const Result result = speciator().speciate(brine, options);
            if (!result.diagnostics.converged) continue;
            EXPECT_TRUE(std::isfinite(result.output.pH));
            for (const NameValue& species : result.output.species.values)
                EXPECT_TRUE(std::isfinite(species.value)) << species.name;
            EXPECT_LE(result.diagnostics.massBalanceError, options.tolerance);
            EXPECT_LE(result.diagnostics.chargeImbalance, options.tolerance);
        }
    }
}
