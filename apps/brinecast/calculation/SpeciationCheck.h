#pragma once

#include "brinecast/calculation/BasisData.h"

#include <korvane/Brinecast.h>

#include <string>
#include <vector>

namespace korvane::Brinecast::cli {

/// Re-derives each component's mass balance and the charge balance from the species a
/// calculation returned, with the coefficients and charges of the library's own basis reaction
/// set. The library does not say whether its solver converged; this is how the program knows.
class SpeciationCheck {
public:
    /// A mass balance closes when it is off by at most this fraction of its total ...
    static constexpr double kMassRelativeTolerance = 1e-6;
    /// ... plus this much, mol/kgw (far below any lab's detection limit).
    static constexpr double kMassAbsoluteTolerance = 1e-12;
    /// The charge balance is held much tighter: in a strong brine a pH off by a whole unit
    /// moves it by only a millionth of the total charge. A solved result closes it to about
    /// 1e-14 of the charge; these leave room for rounding and nothing else.
    static constexpr double kChargeRelativeTolerance = 1e-10;
    static constexpr double kChargeAbsoluteTolerance = 1e-15;  ///< eq/kgw

    struct Species {
        std::string name;
        double molality = 0.0;     ///< mol/kgw
        double coefficient = 0.0;  ///< on the component it is listed under
        double share = 0.0;        ///< coefficient x molality / component total
    };

    struct Component {
        std::string basis;
        double total = 0.0;  ///< mol/kgw, from the input
        double sum = 0.0;    ///< mol/kgw, recomputed from the species
        bool closed = false;
        std::vector<Species> species;  ///< in the library's order: largest molality first
    };

    struct Result {
        std::vector<Component> components;
        double chargeSum = 0.0;    ///< eq/kgw, over every species including H+ and OH-
        double chargeScale = 0.0;  ///< eq/kgw, sum of |charge| x molality
        bool chargeClosed = false;
        /// A measured pH with no ion to take up the imbalance leaves the charge balance open by
        /// design: it is reported, not judged.
        bool chargeLeftOpen = false;
        /// Empty when the result matches the basis reaction set; otherwise what did not match.
        std::string mismatch;

        bool closed() const;
        /// Largest relative error over the mass balances and the charge balance.
        double worstRelativeError() const;
    };

    static Result check(const BasisData& basis, double pH, const std::vector<NameValue>& species);
};

}  // namespace korvane::Brinecast::cli
