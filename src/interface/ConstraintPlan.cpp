#include "interface/ConstraintPlan.h"

#include "database/ElementTable.h"
#include "engine/ProcessedInput.h"
#include "interface/BasisAlkalinity.h"
#include "interface/ChargeName.h"

#include <algorithm>
#include <cmath>
#include <sstream>
#include <stdexcept>
#include <string>

namespace korvane {
namespace Brinecast {

namespace {

constexpr double kLowestPH = 0.0;
constexpr double kHighestPH = 14.0;
constexpr std::size_t kHydrogen = 1;  // basis index of "H+"
constexpr std::size_t kFirstComponent = 2;
/// Carbonic acid's constants at 25 °C (log10) and water's product ((mol/kgw)^2): only to place the
/// first guess of the carbon total, which the solver then corrects.
constexpr double kLogK1 = -6.35;
constexpr double kLogK2 = -10.33;
constexpr double kWaterProduct = 1e-14;
constexpr double kSmallestCarbonGuess = 1e-9;  // mol/kgw
/// A larger guess, which only an acid pH and strong activity effects give, would weigh on the
/// first estimate of the ionic strength (mol/kgw); the solver multiplies it as far as needed.
constexpr double kLargestCarbonGuess = 0.1;  // mol/kgw

/// A number as a person reads it: shortest form that gives it back.
std::string shown(double value) {
    std::ostringstream text;
    text.precision(12);
    text << value;
    return text.str();
}

/// Total carbon (mol/kgw) that would give `alkalinity` (eq/kgw) at `pH` in ideal dilute water at
/// 25 °C, within kSmallestCarbonGuess..kLargestCarbonGuess.
double carbonGuess(double alkalinity, double pH) {
    const double h = std::pow(10.0, -pH);
    const double k1 = std::pow(10.0, kLogK1);
    const double k2 = std::pow(10.0, kLogK2);
    const double perCarbon = (k1 * h + 2.0 * k1 * k2) / (h * h + k1 * h + k1 * k2);  // eq/mol
    const double fromCarbon = alkalinity - (kWaterProduct / h - h);
    const double guess = fromCarbon / perCarbon;
    return std::isfinite(guess) ? std::min(std::max(guess, kSmallestCarbonGuess), kLargestCarbonGuess)
                                : kSmallestCarbonGuess;
}

std::size_t basisIndex(const std::vector<std::string>& basisNames, const std::string& name) {
    const auto found = std::find(basisNames.begin() + kFirstComponent, basisNames.end(), name);
    return found == basisNames.end() ? ConstraintPlan::kNone : static_cast<std::size_t>(found - basisNames.begin());
}

}  // namespace

bool ConstraintPlan::imposes(const Constraints& constraints) {
    return constraints.pH.has_value() || constraints.alkalinity.has_value() || !constraints.balanceWith.empty();
}

void ConstraintPlan::refuseInvalid(const Constraints& constraints, const SolveOptions& options) {
    if (!imposes(constraints)) return;
    if (constraints.pH && !(*constraints.pH >= kLowestPH && *constraints.pH <= kHighestPH)) {
        throw std::invalid_argument("Constraints::pH is " + shown(*constraints.pH) +
                                    "; a measured pH must be a number from 0 to 14.");
    }
    if (constraints.alkalinity && !std::isfinite(*constraints.alkalinity)) {
        throw std::invalid_argument("Constraints::alkalinity is " + shown(*constraints.alkalinity) +
                                    " eq/kgw; it must be a finite number, for example 0.002.");
    }
    if (constraints.alkalinity && !constraints.pH) {
        throw std::invalid_argument("Constraints::alkalinity (" + shown(*constraints.alkalinity) +
                                    " eq/kgw) needs the measured pH in Constraints::pH: total carbon follows "
                                    "from the two together.");
    }
    if (!constraints.balanceWith.empty() && !constraints.pH) {
        throw std::invalid_argument("Constraints::balanceWith (\"" + constraints.balanceWith +
                                    "\") needs a measured pH in Constraints::pH: without one the charge balance "
                                    "sets the pH and has no imbalance left to close.");
    }
    if (options.method == Method::Specified) {
        throw std::invalid_argument("Method::Specified finds the pH from the charge balance only; use "
                                    "Method::Robust or Method::Auto to impose a measured pH or alkalinity.");
    }
}

ConstraintPlan::ConstraintPlan(const Constraints& constraints, ProcessedInput& processed, const ElementTable& table)
    : constraints_(constraints), pH_(*constraints.pH) {
    if (!constraints.balanceWith.empty()) planBalance(processed, table);
    if (constraints.alkalinity) planAlkalinity(processed, table);
}

void ConstraintPlan::planBalance(const ProcessedInput& processed, const ElementTable& table) {
    const std::string& name = constraints_.balanceWith;
    for (const ElementTable::Element& element : table.elements()) {
        if (element.name == name) balanceBasis_ = basisIndex(processed.basisNames, element.basisSpecies);
    }
    if (balanceBasis_ == kNone || !(processed.totals[balanceBasis_] > 0.0)) {
        throw std::invalid_argument("Constraints::balanceWith is \"" + name +
                                    "\", which is not a component of the analysis with a positive amount; name one "
                                    "that is, such as \"Cl\" or \"Na\".");
    }
    if (constraints_.alkalinity && processed.basisNames[balanceBasis_] == table.basisSpecies("C")) {
        throw std::invalid_argument("Constraints::balanceWith is \"" + name +
                                    "\", whose total the alkalinity already sets; close the balance with another "
                                    "ion, such as \"Cl\" or \"Na\".");
    }
    balanceCharge_ = parseCharge(processed.basisNames[balanceBasis_]);
    if (balanceCharge_ == 0) {
        throw std::invalid_argument("Constraints::balanceWith is \"" + name +
                                    "\", whose species carries no charge; name an ion, such as \"Cl\" or \"Na\".");
    }
    givenBalanceTotal_ = processed.totals[balanceBasis_];
    ImposedRow charge;
    charge.basisWeights.resize(processed.basisNames.size(), 0.0);
    for (std::size_t j = kHydrogen; j < processed.basisNames.size(); ++j)
        charge.basisWeights[j] = parseCharge(processed.basisNames[j]);
    charge.freedBasis = balanceBasis_;
    rows_.push_back(std::move(charge));
}

void ConstraintPlan::planAlkalinity(ProcessedInput& processed, const ElementTable& table) {
    const std::string& carbon = table.basisSpecies("C");
    carbonBasis_ = basisIndex(processed.basisNames, carbon);
    if (carbonBasis_ == kNone) {
        carbonBasis_ = processed.basisNames.size();
        processed.basisNames.push_back(carbon);
        processed.totals.resize(carbonBasis_ + 1);
        // A charge row planned before carbon joined needs its weight.
        for (ImposedRow& row : rows_) row.basisWeights.push_back(parseCharge(carbon));
    }
    processed.totals[carbonBasis_] = carbonGuess(*constraints_.alkalinity, pH_);
    ImposedRow alkalinity;
    alkalinity.basisWeights = basisAlkalinities(processed.basisNames, table);
    alkalinity.value = *constraints_.alkalinity;
    alkalinity.freedBasis = carbonBasis_;
    rows_.push_back(std::move(alkalinity));
}

void ConstraintPlan::refuseUnreachable(std::size_t unreachableBasis, double alkalinity) const {
    if (unreachableBasis == kNone) return;
    if (unreachableBasis == balanceBasis_) {
        const char* excess = balanceCharge_ > 0 ? "positive" : "negative";
        throw std::invalid_argument("Closing the charge balance at pH " + shown(pH_) + " with \"" +
                                    constraints_.balanceWith + "\" would need a negative amount of it: the analysis "
                                    "already carries excess " + excess + " charge; name an ion of the other sign, or "
                                    "leave Constraints::balanceWith empty to report the imbalance.");
    }
    if (alkalinity > *constraints_.alkalinity) {
        throw std::invalid_argument("Constraints::alkalinity is " + shown(*constraints_.alkalinity) +
                                    " eq/kgw, below the " + shown(alkalinity) + " eq/kgw that the water and the "
                                    "other components give at pH " + shown(pH_) + " without any carbon; give the "
                                    "alkalinity titrated at that pH.");
    }
    throw std::invalid_argument("Constraints::alkalinity is " + shown(*constraints_.alkalinity) +
                                " eq/kgw, more than carbon can carry at pH " + shown(pH_) + " (" + shown(alkalinity) +
                                " eq/kgw with 30 mol/kgw of it); give the alkalinity titrated at that pH.");
}

void ConstraintPlan::report(const ValueArray& derivedTotals, Result& result) const {
    ConstraintOutcome& outcome = result.constraints;
    outcome.pHFixed = true;
    if (balanceBasis_ != kNone) {
        outcome.balancedWith = constraints_.balanceWith;
        outcome.balancedTotal = derivedTotals[balanceBasis_];
        outcome.balanceAdjustment = derivedTotals[balanceBasis_] - givenBalanceTotal_;
    }
    if (carbonBasis_ != kNone) {
        outcome.alkalinityImposed = true;
        outcome.derivedCarbon = derivedTotals[carbonBasis_];
    }
}

}  // namespace Brinecast
}  // namespace korvane
