// A seeded sweep over random brines: the robust solver converges on every one and agrees with the
// specified solver wherever that converges.
#include <korvane/Speciator.h>

#include "RandomBrines.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <map>
#include <string>

using namespace korvane::Brinecast;

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr std::size_t kBrines = 300;  // the sanitizers slow every calculation tenfold or more
#else
constexpr std::size_t kBrines = 3000;
#endif

SolveOptions using_(Method method) {
    SolveOptions options;
    options.method = method;
    return options;
}

std::map<std::string, double> molalities(const Output& output) {
    std::map<std::string, double> byName;
    for (const NameValue& entry : output.species.values) byName[entry.name] = entry.value;
    return byName;
}

}  // namespace

TEST(RobustSweep, ConvergesOnEveryBrineAndAgreesWithSpecifiedWhereThatConverges) {
    const Speciator speciator;
    const SolveOptions robust = using_(Method::Robust);
    std::size_t specifiedConverged = 0;
    const std::vector<Input> brines = brinecast_test::randomBrines(kBrines, 20261122);
    for (std::size_t b = 0; b < brines.size(); ++b) {
        const Result r = speciator.speciate(brines[b], robust);
        SCOPED_TRACE(testing::Message() << "brine " << b << " at " << brines[b].temperature << " K");
        ASSERT_TRUE(r.diagnostics.converged) << r.diagnostics.iterations << " iterations";
        EXPECT_LE(r.diagnostics.massBalanceError, robust.tolerance);
        EXPECT_LE(r.diagnostics.chargeImbalance, robust.tolerance);

        const Result s = speciator.speciate(brines[b], using_(Method::Specified));
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
    EXPECT_GT(specifiedConverged, kBrines / 4);
    std::printf("Specified converged on %zu of %zu brines\n", specifiedConverged, kBrines);
}
