// Activity models through the public API: which options are refused and why, and what an ideal
// result reports beside a non-ideal one.
#include "SharedSpeciator.h"
#include <korvane/Speciator.h>

#include "BrineCatalog.h"

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <string>

using namespace korvane::Brinecast;
using brinecast_test::molal;

namespace {

using brinecast_test::speciator;

SolveOptions options(Method method, ActivityModel activity) {
    SolveOptions o;
    o.method = method;
    o.activity = activity;
    return o;
}

std::string refusal(const SolveOptions& o) {
    try {
        speciator().speciate(molal({{"Na", 0.5}, {"Cl", 0.5}}), o);
    } catch (const std::invalid_argument& e) {
        return e.what();
    }
    return "accepted";
}

}  // namespace

TEST(SpeciatorActivity, ModelsThatCannotRunAreRefusedSayingWhy) {
    struct Case {
        SolveOptions options;
        const char* message;
    };
    const std::string specified = "Method::Specified solves with ideal activities only; use Method::Robust or "
                                  "Method::Auto with a non-ideal activity model, or ActivityModel::Ideal.";
    const Case cases[] = {
        {options(Method::Specified, ActivityModel::Pitzer), specified.c_str()},
        {options(Method::Specified, ActivityModel::DebyeHuckel), specified.c_str()},
        {options(Method::Specified, ActivityModel::Davies), specified.c_str()},
        {options(Method::Robust, static_cast<ActivityModel>(9)),
         "Unknown activity model 9; use ActivityModel::Ideal, Davies, DebyeHuckel or Pitzer."},
    };
    for (const Case& c : cases) EXPECT_EQ(refusal(c.options), c.message);
}

// Ideal is what hosts had before: no water activity, every log γ 0, and the ionic strength still
// computed, by every method. A non-ideal model under Auto goes to the robust solver directly.
TEST(SpeciatorActivity, EveryModelReportsItsActivitiesBesideTheSpecies) {
    // 1 mol/kgw NaCl and 0.01 CaSO4: I ≈ 1 + 4·0.01·2·0.5 = 1.04 mol/kgw less the CaSO4 ion pair.
    const Input brine = molal({{"Na", 1.0}, {"Cl", 1.0}, {"Ca", 0.01}, {"S(6)", 0.01}});
    struct Case {
        Method method;
        ActivityModel activity;
        Method solvedBy;
    };
    const Case cases[] = {{Method::Specified, ActivityModel::Ideal, Method::Specified},
                          {Method::Robust, ActivityModel::Ideal, Method::Robust},
                          {Method::Auto, ActivityModel::Ideal, Method::Specified},
                          {Method::Auto, ActivityModel::Davies, Method::Robust},
                          {Method::Auto, ActivityModel::DebyeHuckel, Method::Robust}};
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "method " << static_cast<int>(c.method) << ", model "
                                        << static_cast<int>(c.activity));
        const Result r = speciator().speciate(brine, options(c.method, c.activity));
        ASSERT_TRUE(r.diagnostics.converged);
        EXPECT_EQ(r.diagnostics.method, c.solvedBy);
        EXPECT_FALSE(r.diagnostics.fellBack);
        EXPECT_EQ(r.activity, c.activity);
        EXPECT_GT(r.ionicStrength, 1.0);
        EXPECT_LT(r.ionicStrength, 1.04);
        ASSERT_EQ(r.logActivityCoefficients.size(), r.output.species.values.size());
        for (std::size_t i = 0; i < r.logActivityCoefficients.size(); ++i) {
            const std::string& name = r.output.species.values[i].name;
            const double logGamma = r.logActivityCoefficients[i];
            if (c.activity == ActivityModel::Ideal) {
                EXPECT_EQ(logGamma, 0.0) << name;
            } else if (name == "Na+" || name == "Ca+2" || name == "SO4-2") {
                EXPECT_LT(logGamma, -0.05) << name;  // at I ≈ 1 ions are less active than their molality
            } else if (name == "CaSO4") {
                EXPECT_GT(logGamma, 0.05) << name;  // and neutral species more
            }
        }
        const double waterLogActivity = c.activity == ActivityModel::Ideal ? 0.0 : std::log10(1.0 - 0.017 * 2.0);
        EXPECT_NEAR(r.logWaterActivity, waterLogActivity, 0.001);
    }
}
