#pragma once

#include "tools/ValueArray.h"

#include <korvane/Brinecast.h>

#include <cstddef>
#include <string>
#include <vector>

namespace korvane {
namespace Brinecast {

class ElementTable;
class SpeciesModel;

/// The caller's analysis made ready for the equations: a validated copy with temperature,
/// pressure and density settled, and the basis species ("H2O", "H+", then one per element and per
/// gas not counted in an element) with their totals in mol/kgw.
struct ProcessedInput {
    Input input;                          ///< copy with the final temperature (K), pressure (Pa), density (g/cm3)
    ValueArray totals;                    ///< mol/kgw per basis name; water's is the moles in 1 kg of water
    std::vector<std::string> basisNames;  ///< "H2O", "H+", element basis species, then unmerged gases
    const SpeciesModel& model;            ///< not owned; outlives this object
};

/// Validates, defaults and converts `input` against `model`. Per-litre analyses without a density
/// get one from the thermodynamic engine found in `input.dllPath`.
ProcessedInput processInput(const Input& input, const SpeciesModel& model);

/// Element `index` of `elements` in mol/kgw, given the brine density in g/cm3.
double toMolality(const ConcentsWithUnit& elements, std::size_t index, double densityGPerCm3,
                  const ElementTable& table);

/// The same with the element's molar mass (g/mol) and the list's sum already at hand: S, the
/// raw values, for mg/L and mg/kg; W, kg of solute per litre, for mmol/L; unused otherwise.
double toMolality(const ConcentsWithUnit& elements, std::size_t index, double densityGPerCm3, double molarMass,
                  double sum);

}  // namespace Brinecast
}  // namespace korvane
