#include "activity/pitzer/PitzerActivity.h"

#include "activity/pitzer/ElectrostaticMixing.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <stdexcept>

namespace korvane {
namespace Brinecast {

namespace {

constexpr double kLn10 = 2.302585092994045684;
constexpr double kWaterMolesPerKg = 55.50837;
constexpr double kB = 1.2;  // (kg/mol)^0.5, the b of the Pitzer Debye–Hückel term
constexpr std::size_t kMaxAlphas = 8;
constexpr std::size_t kMaxCombinations = 4;

/// PHREEQC's high-pressure reduction of b, monovalent (k1 + k2 (T − T1)²) P' and divalent
/// k3 (T − T2)^e1 P'^e2 above T2, each capped at 0.2.
constexpr double kShiftK1 = 7e-5, kShiftK2 = 1.93e-9, kShiftT1 = 250.0;                    // 1/atm, K
constexpr double kShiftK3 = 9.65e-10, kShiftT2 = 263.0, kShiftE1 = 2.773, kShiftE2 = 0.623;  // K
constexpr double kShiftCap = 0.2;

double g(double x) { return 2.0 * (1.0 - (1.0 + x) * std::exp(-x)) / (x * x); }
double gPrime(double x) { return -2.0 * (1.0 - (1.0 + x + 0.5 * x * x) * std::exp(-x)) / (x * x); }

/// α1 and α2 of a cation–anion pair: 2 and 12 when either is monovalent, 1.4 and 12 for 2–2.
std::pair<double, double> alphasOf(int zi, int zj) {
    const int a = std::abs(zi), b = std::abs(zj);
    if (a == 1 || b == 1) return {2.0, 12.0};
    if (a == 2 && b == 2) return {1.4, 12.0};
    return {2.0, 50.0};
}

/// The KCl line of kind `kind` at T: the MacInnes scale needs it whether or not the brine holds K.
double kclParameter(const PitzerDatabase& database, PitzerParameter::Kind kind, double temperatureK) {
    const std::int32_t k = database.find("K+"), cl = database.find("Cl-");
    for (const PitzerParameter& p : database.parameters()) {
        if (p.kind != kind) continue;
        if ((p.species[0] == k && p.species[1] == cl) || (p.species[0] == cl && p.species[1] == k))
            return p.at(temperatureK);
    }
    return 0.0;
}

}  // namespace

PitzerActivity::PitzerActivity(const PitzerDatabase& database, const std::vector<std::int32_t>& species,
                               const WaterProperties& water, bool macInnes)
    : lnGamma_(species.size(), 0.0), macInnes_(macInnes) {
    const double T = water.temperatureK;
    aphi_ = water.debyeHuckelA * kLn10 / 3.0;
    if (water.pressureAtm > 1.0) {
        const double p = water.pressureAtm;
        const double mono = std::min((kShiftK1 + kShiftK2 * (T - kShiftT1) * (T - kShiftT1)) * p, kShiftCap);
        b1_ = kB - mono;
        b2_ = T > kShiftT2 ? kB - std::min(kShiftK3 * std::pow(T - kShiftT2, kShiftE1) * std::pow(p, kShiftE2), kShiftCap)
                           : b1_;
    }
    std::vector<std::int32_t> local(database.species().size(), -1);
    for (std::size_t n = 0; n < species.size(); ++n) {
        local[static_cast<std::size_t>(species[n])] = static_cast<std::int32_t>(n);
        charges_.push_back(database.species()[static_cast<std::size_t>(species[n])].charge);
    }
    for (const PitzerParameter& parameter : database.parameters()) addTerm(parameter, local, T);
    for (std::size_t i = 0; i < species.size(); ++i) {
        for (std::size_t j = i + 1; j < species.size(); ++j) {
            const int zi = charges_[i], zj = charges_[j];
            if (zi == zj || zi * zj <= 0) continue;
            const std::pair<int, int> key{std::min(zi, zj), std::max(zi, zj)};
            auto it = std::find(combinations_.begin(), combinations_.end(), key);
            if (it == combinations_.end()) it = combinations_.insert(combinations_.end(), key);
            pairs_.push_back({static_cast<std::int32_t>(i), static_cast<std::int32_t>(j),
                              static_cast<std::int32_t>(it - combinations_.begin())});
        }
    }
    if (combinations_.size() > kMaxCombinations) throw std::logic_error("Ions of more than two charges per sign.");
    if (macInnes_) {
        chloride_ = local[static_cast<std::size_t>(database.find("Cl-"))];
        if (chloride_ < 0) throw std::logic_error("The MacInnes scale needs Cl- among the Pitzer species.");
        kclB0_ = kclParameter(database, PitzerParameter::Kind::B0, T);
        kclB1_ = kclParameter(database, PitzerParameter::Kind::B1, T);
        kclC_ = kclParameter(database, PitzerParameter::Kind::C0, T);
    }
}

std::int32_t PitzerActivity::alphaSlot(double alpha) {
    for (std::size_t a = 0; a < alphas_.size(); ++a) {
        if (alphas_[a] == alpha) return static_cast<std::int32_t>(a);
    }
    if (alphas_.size() == kMaxAlphas) throw std::logic_error("Too many distinct Pitzer alphas.");
    alphas_.push_back(alpha);
    return static_cast<std::int32_t>(alphas_.size() - 1);
}

void PitzerActivity::addTerm(const PitzerParameter& parameter, const std::vector<std::int32_t>& local,
                             double temperatureK) {
    Term term{parameter.kind, -1, -1, -1, 0.0, -1};
    std::int32_t* slots[3] = {&term.i, &term.j, &term.k};
    for (int n = 0; n < 3; ++n) {
        if (parameter.species[n] < 0) continue;
        *slots[n] = local[static_cast<std::size_t>(parameter.species[n])];
        if (*slots[n] < 0) return;  // a species the brine does not have: the line does not apply
    }
    term.value = parameter.at(temperatureK);
    using Kind = PitzerParameter::Kind;
    const int zi = charges_[static_cast<std::size_t>(term.i)], zj = charges_[static_cast<std::size_t>(term.j)];
    if (term.kind == Kind::B1 || term.kind == Kind::B2) {
        if (term.value == 0.0) return;
        const auto alphas = alphasOf(zi, zj);
        term.alpha = alphaSlot(term.kind == Kind::B1 ? alphas.first : alphas.second);
    }
    if (term.kind == Kind::C0) term.value /= 2.0 * std::sqrt(static_cast<double>(std::abs(zi * zj)));
    terms_.push_back(term);
}

double PitzerActivity::debyeHuckel(double b, double root) const {
    return -aphi_ * (root / (1.0 + b * root) + 2.0 / b * std::log(1.0 + b * root));
}

void PitzerActivity::macInnesShift(double I, double root, double f1, double* lnGamma) const {
    const double x = 2.0 * root;
    const double kcl = f1 + 2.0 * I * kclB0_ + 2.0 * I * kclB1_ * (1.0 - (1.0 + x - 0.5 * x * x) * std::exp(-x)) / (x * x) +
                       1.5 * kclC_ * I * I;
    const double shift = lnGamma[chloride_] - kcl;
    for (std::size_t n = 0; n < charges_.size(); ++n) lnGamma[n] += charges_[n] * shift;
}

void PitzerActivity::addVirialTerms(const double* m, double I, double Z, double root, Sums& sums) {
    double gAlpha[kMaxAlphas], gPrimeAlpha[kMaxAlphas], expAlpha[kMaxAlphas];
    for (std::size_t a = 0; a < alphas_.size(); ++a) {
        const double x = alphas_[a] * root;
        gAlpha[a] = g(x);
        gPrimeAlpha[a] = gPrime(x) / I;
        expAlpha[a] = std::exp(-x);
    }
    double* L = lnGamma_.data();
    using Kind = PitzerParameter::Kind;
    for (const Term& t : terms_) {
        const double mi = m[t.i], mj = m[t.j], p = t.value;
        switch (t.kind) {
        case Kind::B1:
        case Kind::B2: {
            const double gp = p * gAlpha[t.alpha];
            L[t.i] += 2.0 * mj * gp;
            L[t.j] += 2.0 * mi * gp;
            sums.osmotic += mi * mj * p * expAlpha[t.alpha];
            sums.fPrime += mi * mj * p * gPrimeAlpha[t.alpha];
            break;
        }
        case Kind::C0:
            L[t.i] += mj * Z * p;
            L[t.j] += mi * Z * p;
            sums.osmotic += mi * mj * Z * p;
            sums.cSum += mi * mj * p;
            break;
        case Kind::Zeta:
        case Kind::Psi: {
            const double mk = m[t.k];
            L[t.i] += mj * mk * p;
            L[t.j] += mi * mk * p;
            L[t.k] += mi * mj * p;
            sums.osmotic += mi * mj * mk * p;
            break;
        }
        default:  // B0, THETA, LAMBDA: a plain second virial coefficient
            if (t.i == t.j) {
                L[t.i] += 2.0 * mi * p;
                sums.osmotic += 0.5 * mi * mi * p;
            } else {
                L[t.i] += 2.0 * mj * p;
                L[t.j] += 2.0 * mi * p;
                sums.osmotic += mi * mj * p;
            }
        }
    }
}

void PitzerActivity::addMixingTerms(const double* m, double I, Sums& sums) {
    ElectrostaticMixing mixing[kMaxCombinations];
    for (std::size_t c = 0; c < combinations_.size(); ++c)
        mixing[c] = ElectrostaticMixing::of(combinations_[c].first, combinations_[c].second, aphi_, I);
    double* L = lnGamma_.data();
    for (const MixingPair& pair : pairs_) {
        const ElectrostaticMixing& e = mixing[pair.combination];
        const double mi = m[pair.i], mj = m[pair.j];
        L[pair.i] += 2.0 * mj * e.theta;
        L[pair.j] += 2.0 * mi * e.theta;
        sums.osmotic += mi * mj * (e.theta + I * e.thetaPrime);
        sums.fPrime += mi * mj * e.thetaPrime;
    }
}

PitzerState PitzerActivity::evaluate(const double* m, double* logGamma) {
    const std::size_t n = charges_.size();
    double I = 0.0, Z = 0.0, M = 0.0;  // ionic strength, Σ|z|m and Σm, mol/kgw
    for (std::size_t s = 0; s < n; ++s) {
        I += 0.5 * charges_[s] * charges_[s] * m[s];
        Z += std::abs(charges_[s]) * m[s];
        M += m[s];
    }
    const double root = std::sqrt(I);
    std::fill(lnGamma_.begin(), lnGamma_.end(), 0.0);
    // The osmotic sum starts from the Debye–Hückel term with the unshifted b, at any pressure.
    Sums sums{-aphi_ * I * root / (1.0 + kB * root), 0.0, 0.0};
    addVirialTerms(m, I, Z, root, sums);
    addMixingTerms(m, I, sums);
    double* L = lnGamma_.data();
    const double f1 = debyeHuckel(b1_, root), f2 = debyeHuckel(b2_, root), f0 = debyeHuckel(kB, root);
    for (std::size_t s = 0; s < n; ++s) {
        const int z = std::abs(charges_[s]);
        if (z == 0) continue;
        L[s] += z * z * ((z == 1 ? f1 : z == 2 ? f2 : f0) + sums.fPrime) + z * sums.cSum;
    }
    if (macInnes_) macInnesShift(I, root, f1, L);
    for (std::size_t s = 0; s < n; ++s) logGamma[s] = L[s] / kLn10;
    PitzerState state;
    state.ionicStrength = I;
    state.osmoticCoefficient = M > 0.0 ? 1.0 + 2.0 * sums.osmotic / M : 1.0;
    state.logWaterActivity = -M * state.osmoticCoefficient / kWaterMolesPerKg / kLn10;
    return state;
}

}  // namespace Brinecast
}  // namespace korvane
