#pragma once

#include "solver/ImposedRow.h"
#include "tools/ValueArray.h"

#include <korvane/Speciator.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace korvane {
namespace Brinecast {

class ElementTable;
struct ProcessedInput;
struct SpeciationSystem;

/// Constraints turned into what the log-space solver takes: the held pH and the rows that
/// replace mass balances, with the basis places of the totals they free.
class ConstraintPlan {
public:
    static constexpr std::size_t kNone = SIZE_MAX;

    /// Refuses constraints that are wrong whatever the analysis: the values, and what the method
    /// `options` names cannot impose.
    static void refuseInvalid(const Constraints& constraints, const SolveOptions& options);
    /// Whether `constraints` imposes anything at all.
    static bool imposes(const Constraints& constraints);

    /// The plan for an analysis already processed. With an alkalinity, the carbon basis species
    /// joins `processed` when the analysis has none, and its total becomes the starting guess the
    /// alkalinity and pH suggest. Refuses a closing component the analysis cannot adjust.
    ConstraintPlan(const Constraints& constraints, ProcessedInput& processed, const ElementTable& table);

    double pH() const { return pH_; }
    const std::vector<ImposedRow>& rows() const { return rows_; }
    /// Refuses, naming the values, a result whose freed total `unreachableBasis` (kNone: none)
    /// would have had to turn negative; `alkalinity` (eq/kgw) is that result's own.
    void refuseUnreachable(std::size_t unreachableBasis, double alkalinity) const;
    /// Fills the constraints' part of `result` from the totals (mol/kgw) the solver derived.
    void report(const ValueArray& derivedTotals, Result& result) const;

private:
    void planBalance(const ProcessedInput& processed, const ElementTable& table);
    void planAlkalinity(ProcessedInput& processed, const ElementTable& table);

    const Constraints& constraints_;
    double pH_;
    std::vector<ImposedRow> rows_;
    std::size_t balanceBasis_ = kNone;
    std::int32_t balanceCharge_ = 0;
    double givenBalanceTotal_ = 0.0;  ///< mol/kgw
    std::size_t carbonBasis_ = kNone;
};

}  // namespace Brinecast
}  // namespace korvane
