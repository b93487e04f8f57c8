// The activity iteration over random brines (fresh to 6 mol/kgw, 0-200 degC, 1 to 1000 atm): what
// must hold whatever the brine, for every non-ideal model.
#include "solver/ActivitySpeciationSolver.h"

#include "activity/ActivityCoefficientModel.h"
#include "database/SpeciesModel.h"
#include "engine/ProcessedInput.h"
#include "solver/BalanceClosure.h"
#include "solver/ReactionIndex.h"

#include "RandomBrines.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using namespace korvane::Brinecast;

namespace {

constexpr std::size_t kBrines = 150;
constexpr double kTolerance = 1e-11;
// The balances close to the tolerance; the mass action and I and Σm, which the outer iteration
// makes consistent to the tolerance in ln I and ln Σm, carry that times d log γ / d ln I (< 10).
constexpr double kConsistency = 1e-9;
constexpr double kPressuresPa[3] = {101325.0, 200e5, 1000 * 101325.0};

const SpeciesModel& speciesModel() {
    static const SpeciesModel model;
    return model;
}

const ReactionIndex& reactionIndex() {
    static const ReactionIndex index(speciesModel().reactions);
    return index;
}

}  // namespace

TEST(ActivitySpeciationSolver, ActivitiesObeyMassActionAndBalancesCloseOnRandomBrines) {
    const std::vector<Input> brines = brinecast_test::randomBrines(kBrines, 20261123);
    for (ActivityModel kind : {ActivityModel::Davies, ActivityModel::DebyeHuckel}) {
        for (std::size_t b = 0; b < brines.size(); ++b) {
            Input input = brines[b];
            input.pressure = kPressuresPa[b % 3];
            SCOPED_TRACE(testing::Message() << "model " << static_cast<int>(kind) << ", brine " << b << " at "
                                            << input.temperature << " K, " << input.pressure << " Pa");
            const ProcessedInput processed = processInput(input, speciesModel());
            const SpeciationSystem system = reactionIndex().select(processed.basisNames, input.temperature);
            const auto model = ActivityCoefficientModel::prepare(kind, system, speciesModel().reactions,
                                                                 input.temperature, input.pressure);
            ActivitySpeciationSolver solver(system, processed.totals, *model, 0.0);
            ASSERT_TRUE(solver.solve(kTolerance, 200).converged);

            const std::vector<double>& m = solver.molalities();
            const std::vector<double>& logGamma = solver.logActivityCoefficients();
            const BalanceClosure closure = BalanceClosure::measure(system.basisCount, processed.totals,
                                                                   system.coefficients, system.charges, m.data());
            EXPECT_LE(closure.massBalanceError, kTolerance);
            EXPECT_LE(closure.chargeImbalance, kTolerance);

            double ionicStrength = 0.0, solutes = 0.0;
            for (std::size_t k = 0; k < m.size(); ++k) {
                ionicStrength += 0.5 * system.charges[k] * system.charges[k] * m[k];
                if (*system.speciesNames[k] != "H2O") solutes += m[k];
            }
            EXPECT_NEAR(solver.ionicStrength() / ionicStrength, 1.0, kConsistency);
            EXPECT_NEAR(solver.logWaterActivity(), std::log10(1.0 - 0.017 * solutes), kConsistency);

            // log a_k = log γ_k + log m_k = log K_k(I) + Σ_j A(j, k) log a_j, with a(H+) = 10^-pH.
            std::vector<double> logK(m.size());
            model->logEquilibriumConstants(solver.ionicStrength(), logK.data());
            std::vector<double> basisLogActivity(system.basisCount, 0.0);
            basisLogActivity[0] = solver.logWaterActivity();
            basisLogActivity[1] = -solver.pH();
            for (std::size_t j = 2; j < system.basisCount; ++j) {
                const auto k = static_cast<std::size_t>(system.masterSpecies[j]);
                basisLogActivity[j] = std::log10(m[k]) + logGamma[k];
            }
            for (std::size_t k = 0; k < m.size(); ++k) {
                if (!(m[k] > 0.0) || *system.speciesNames[k] == "H2O") continue;
                double logActivity = logK[k];
                for (std::size_t j = 0; j < system.basisCount; ++j) {
                    if (system.coefficient(j, k) != 0.0) logActivity += system.coefficient(j, k) * basisLogActivity[j];
                }
                EXPECT_NEAR(std::log10(m[k]) + logGamma[k], logActivity, kConsistency) << *system.speciesNames[k];
            }
        }
    }
}
