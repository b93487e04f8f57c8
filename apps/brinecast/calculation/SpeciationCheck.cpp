#include "brinecast/calculation/SpeciationCheck.h"

#include <algorithm>
#include <cmath>

namespace korvane::Brinecast::cli {
namespace {

/// The library lists a species under a component when its coefficient there exceeds this.
constexpr double kListedCoefficient = 1e-8;

bool closes(double error, double scale, double relative, double absolute) {
    return std::abs(error) <= relative * std::abs(scale) + absolute;
}

double relativeError(double error, double scale) {
    if (!std::isfinite(error) || !std::isfinite(scale)) return INFINITY;
    if (scale == 0.0) return error == 0.0 ? 0.0 : INFINITY;
    return std::abs(error) / std::abs(scale);
}

std::string shapeMismatch(const BasisData& b) {
    const std::size_t n = b.basisNames.size();
    const std::size_t k = b.speciesNames.size();
    if (n < 2 || b.totals.size() < n || b.charges.size() != k || b.logK.size() != k ||
        b.coefficients.size() != n * k) {
        return "the basis reaction set's arrays do not fit together (" + std::to_string(n) +
               " components, " + std::to_string(k) + " species)";
    }
    return {};
}

/// Matches the result's species, group by group, to the species of the basis reaction set.
/// Fills `molality` and `found` for the species the result lists, and the components' lists.
std::string pairSpecies(const BasisData& b, const std::vector<NameValue>& listed,
                        std::vector<double>& molality, std::vector<bool>& found,
                        SpeciationCheck::Result& r) {
    const std::size_t n = b.basisNames.size();
    std::size_t next = 0;
    for (std::size_t j = 2; j < n; ++j) {
        SpeciationCheck::Component c;
        c.basis = b.basisNames[j];
        c.total = b.totals[j];
        std::vector<bool> taken(b.speciesNames.size(), false);
        std::size_t members = 0;
        for (std::size_t k = 0; k < b.speciesNames.size(); ++k) {
            if (std::abs(b.coefficient(k, j)) > kListedCoefficient) ++members;
        }
        for (std::size_t m = 0; m < members; ++m, ++next) {
            if (next >= listed.size()) {
                return "the result lists " + std::to_string(listed.size()) +
                       " species, fewer than the basis reaction set gives";
            }
            const NameValue& entry = listed[next];
            std::size_t k = 0;
            while (k < b.speciesNames.size() &&
                   (taken[k] || b.speciesNames[k] != entry.name ||
                    std::abs(b.coefficient(k, j)) <= kListedCoefficient)) {
                ++k;
            }
            if (k == b.speciesNames.size()) {
                return "species \"" + entry.name + "\" is listed under " + c.basis +
                       ", which it does not contain";
            }
            taken[k] = true;
            found[k] = true;
            molality[k] = entry.value;
            c.species.push_back({entry.name, entry.value, b.coefficient(k, j), 0.0});
        }
        r.components.push_back(std::move(c));
    }
    if (next != listed.size()) {
        return "the result lists " + std::to_string(listed.size()) + " species, more than the " +
               std::to_string(next) + " the basis reaction set gives";
    }
    return {};
}

}  // namespace

bool SpeciationCheck::Result::closed() const {
    if (!mismatch.empty() || !(chargeClosed || chargeLeftOpen)) return false;
    return std::all_of(components.begin(), components.end(),
                       [](const Component& c) { return c.closed; });
}

double SpeciationCheck::Result::worstRelativeError() const {
    double worst = chargeLeftOpen ? 0.0 : relativeError(chargeSum, chargeScale);
    for (const Component& c : components) {
        worst = std::max(worst, relativeError(c.sum - c.total, c.total));
    }
    return worst;
}

SpeciationCheck::Result SpeciationCheck::check(const BasisData& b, double pH,
                                               const std::vector<NameValue>& species) {
    Result r;
    r.mismatch = shapeMismatch(b);
    if (!r.mismatch.empty()) return r;

    std::vector<double> molality(b.speciesNames.size(), 0.0);
    std::vector<bool> found(b.speciesNames.size(), false);
    r.mismatch = pairSpecies(b, species, molality, found, r);
    if (!r.mismatch.empty()) return r;

    // Species made of water and H+ alone (H+, OH-, water itself) are in no group; their
    // molality follows from mass action with water at activity 1 and H+ at 10^-pH.
    for (std::size_t k = 0; k < molality.size(); ++k) {
        if (!found[k]) {
            molality[k] = std::pow(10.0, b.logK[k] - b.coefficient(k, 1) * pH);
        }
    }

    for (std::size_t j = 2; j < b.basisNames.size(); ++j) {
        Component& c = r.components[j - 2];
        c.sum = 0.0;
        for (std::size_t k = 0; k < molality.size(); ++k) {
            // Skipping absent coefficients keeps a bad pH out of the mass balances.
            if (b.coefficient(k, j) != 0.0) c.sum += b.coefficient(k, j) * molality[k];
        }
        c.closed = std::isfinite(c.sum) && closes(c.sum - c.total, c.total,
                                                     SpeciationCheck::kMassRelativeTolerance,
                                                     SpeciationCheck::kMassAbsoluteTolerance);
        for (Species& s : c.species) s.share = s.coefficient * s.molality / c.total;
    }

    for (std::size_t k = 0; k < molality.size(); ++k) {
        r.chargeSum += b.charges[k] * molality[k];
        r.chargeScale += std::abs(b.charges[k]) * molality[k];
    }
    r.chargeClosed = std::isfinite(r.chargeSum) && closes(r.chargeSum, r.chargeScale,
                                                          kChargeRelativeTolerance,
                                                          kChargeAbsoluteTolerance);
    return r;
}

}  // namespace korvane::Brinecast::cli
