#pragma once

#include <korvane/Brinecast.h>
#include <korvane/PrecipitationPotential.h>
#include <korvane/Speciator.h>

#include <functional>
#include <string>
#include <vector>

namespace korvane {
namespace Brinecast {

class ElementTable;
class MineralSet;
struct Mineral;

/// The precipitation potential of single minerals of one brine: the amount x (mol per kg of the
/// brine's water) whose removal brings the mineral to saturation, found by a bracketed search on
/// [0, the smallest total / coefficient of the mineral's components], the speciation solved
/// again at each trial x.
class PrecipitationSearch {
public:
    using Speciate = std::function<Result(const Input&)>;

    /// `molal` is the brine in mol/kgw with its density settled (as `molalAnalysis` gives it);
    /// gases carried by an element of the list are counted in that element.
    PrecipitationSearch(const Input& molal, Speciate speciate, const MineralSet& minerals,
                        const ElementTable& table);

    /// The potential of `mineral` from its saturation index `saturationIndex` in the brine.
    PrecipitationPotential of(const Mineral& mineral, double saturationIndex) const;

    /// The brine after `amount` mol/kgw of `mineral` left it, with its water of crystallisation:
    /// totals (m - ν·x) / (1 - n_w·x·M_w), per kg of the water that remains.
    Input without(const Mineral& mineral, double amount) const;

private:
    /// Saturation index of `mineral` after `amount` left; -inf when a component is used up.
    double saturationAfter(const Mineral& mineral, double amount, bool& converged) const;
    /// The largest amount the components allow (mol/kgw); 0 when one is missing.
    double largestAmount(const Mineral& mineral) const;
    /// Index in the element list (>= 0) or, as -1 - j, in the gas list of the component whose
    /// basis species is `species`; nothing when the brine lacks it.
    bool component(const std::string& species, std::ptrdiff_t& index) const;

    Input molal_;
    Speciate speciate_;
    const MineralSet& minerals_;
    const ElementTable& table_;
    double litresPerKgWater_;  ///< L of brine per kg of its water
};

}  // namespace Brinecast
}  // namespace korvane
