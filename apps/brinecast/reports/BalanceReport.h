#pragma once

#include "brinecast/readers/Analysis.h"
#include "brinecast/calculation/ChargeBalance.h"

#include <ostream>
#include <string>
#include <vector>

namespace korvane::Brinecast::cli {

/// What `brinecast balance` prints: each analysis' charge imbalance and the amount of one ion,
/// in the analysis' unit, that cancels it.
class BalanceReport {
public:
    struct Entry {
        Analysis analysis;
        ChargeBalance charge;
        double amount = 0.0;  ///< to add; negative to take away
        std::string cannotCancel;  ///< why the ion cannot cancel it; empty when it can
    };

    /// `element` is the library's name; `ion` and `file` as the user gave them, for the
    /// command line that applies the balance.
    static void writeTable(std::ostream& out, const std::vector<Entry>& entries,
                           const std::string& element, const std::string& ion, const std::string& file);
    static void writeJson(std::ostream& out, const std::vector<Entry>& entries, const std::string& element);
};

}  // namespace korvane::Brinecast::cli
