#pragma once

#include "brinecast/readers/Analysis.h"

#include <string>

namespace korvane::Brinecast::cli {

/// The charge balance of an analysis as a lab reports it: net charge (cations minus anions)
/// and the balance error in percent of the total charge. The sums are the library's
/// (`getMolarCharge`), which count carbon as bicarbonate; carbonate reported as CO3-- gets its
/// second charge back here, so that a balanced lab report reads as balanced.
class ChargeBalance {
public:
    /// Above this imbalance, in percent of the total charge, the pH is not meaningful: it
    /// follows from the charge balance, so the lab's error ends up carried by H+ or OH-.
    static constexpr double kLargePercent = 5.0;

    static ChargeBalance of(const Analysis& analysis);

    /// Amount of `element`, in the analysis' unit, whose ion cancels the net charge
    /// (`getIonAmountToBalanceCharge`); negative when that much must be taken away.
    double amountToCancel(const std::string& element) const;

    /// Why `amount` of `element` cannot be added to the analysis (it would take away more than
    /// the analysis holds), naming the ion to use instead; empty when it can.
    static std::string cannotCancel(const Analysis& analysis, const std::string& element,
                                    double amount);
    /// Adds `amount` of `element` to the analysis (appending the element when absent). Throws
    /// `InputError` with `cannotCancel`'s message when that would leave a negative amount.
    static void add(Analysis& analysis, const std::string& element, double amount);

    double net() const { return net_; }
    double total() const { return total_; }
    /// 100 x net / total; 0 for an analysis without ions.
    double errorPercent() const;
    bool large() const;
    /// "eq/kgw", "eq/L" or "eq/kg": the basis the analysis' unit gives the sums.
    const std::string& unitName() const { return unitName_; }

private:
    ConcentUnit unit_ = Undefined;
    double net_ = 0.0;
    double total_ = 0.0;
    std::string unitName_;
};

}  // namespace korvane::Brinecast::cli
