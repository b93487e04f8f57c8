#pragma once

#include "activity/WaterProperties.h"
#include "activity/pitzer/PitzerDatabase.h"

#include <cstdint>
#include <vector>

namespace korvane {
namespace Brinecast {

/// What the Pitzer equations give for one set of molalities.
struct PitzerState {
    double ionicStrength = 0.0;        ///< mol/kgw
    double osmoticCoefficient = 1.0;   ///< φ
    double logWaterActivity = 0.0;     ///< log10 a(H2O) = −M φ / (55.50837 ln 10)
};

/// The Harvie–Møller–Weare activity model for one species set at one temperature and pressure:
/// virial terms of every parameter line whose species all take part, the unlike-charge mixing
/// terms, the osmotic coefficient and water activity, and optionally the MacInnes scale that ties
/// single-ion coefficients to γ± of KCl. The parameters are evaluated once at construction, so
/// each evaluation is plain arithmetic over flat arrays.
class PitzerActivity {
public:
    /// `species`: indices into `database`'s species, in the order molalities will be given. Under
    /// the MacInnes convention the set must contain Cl- (with molality 0 when the brine has none).
    PitzerActivity(const PitzerDatabase& database, const std::vector<std::int32_t>& species,
                   const WaterProperties& water, bool macInnes);

    /// log10 γ of every species (`logGamma`, same order) and the water terms at `molalities`
    /// (mol/kgw). Needs a positive ionic strength.
    PitzerState evaluate(const double* molalities, double* logGamma);

    /// Osmotic Debye–Hückel slope A^φ at the model's temperature and pressure ((kg/mol)^0.5).
    double osmoticSlope() const { return aphi_; }

private:
    /// One parameter line resolved to local species numbers and its value at T.
    struct Term {
        PitzerParameter::Kind kind;
        std::int32_t i, j, k;  ///< k is -1 for pairs
        double value;          ///< at T; C0 already divided by 2√|z_i z_j|
        std::int32_t alpha;    ///< slot of α for B1 and B2, else -1
    };
    /// A pair of same-sign ions of unlike charge, and which charge combination it is.
    struct MixingPair {
        std::int32_t i, j;
        std::int32_t combination;
    };

    /// The sums the per-ion terms share: the osmotic sum S_φ, F' and Σ m_c m_a C_ca.
    struct Sums {
        double osmotic;
        double fPrime;
        double cSum;
    };

    void addVirialTerms(const double* molalities, double ionicStrength, double chargeSum, double root, Sums& sums);
    void addMixingTerms(const double* molalities, double ionicStrength, Sums& sums);
    void addTerm(const PitzerParameter& parameter, const std::vector<std::int32_t>& local, double temperatureK);
    std::int32_t alphaSlot(double alpha);
    double debyeHuckel(double b, double root) const;
    void macInnesShift(double ionicStrength, double root, double f1, double* lnGamma) const;

    std::vector<int> charges_;
    std::vector<Term> terms_;
    std::vector<MixingPair> pairs_;
    std::vector<std::pair<int, int>> combinations_;  ///< distinct (z_i, z_j) of pairs_
    std::vector<double> alphas_;                     ///< distinct α of the B1 and B2 terms
    std::vector<double> lnGamma_;                    ///< scratch, per species
    double aphi_ = 0.0;
    double b1_ = 1.2, b2_ = 1.2;  ///< Debye–Hückel b of mono- and divalent ions after the pressure shift
    bool macInnes_ = true;
    std::int32_t chloride_ = -1;
    double kclB0_ = 0.0, kclB1_ = 0.0, kclC_ = 0.0;  ///< KCl β0, β1, C^φ at T
};

}  // namespace Brinecast
}  // namespace korvane
