#pragma once

#include <korvane/Brinecast.h>

namespace korvane {
namespace Brinecast {

class ElementTable;
class SpeciesModel;

/// `analysis` with its elements in mol/kgw, converted at its own temperature, pressure and
/// density, with those conditions and the density (g/cm3, given or from the engine) settled in
/// the copy. Checks the conditions and amounts as a speciation does, before the engine is asked.
/// Speciating the copy gives the analysis' own result without another density calculation.
Input molalAnalysis(const Input& analysis, const SpeciesModel& model);

/// kg of solution per kg of water of an analysis in mol/kgw: the water, its elements counted as
/// the ions they are reported as, and its gases.
double solutionMassPerKgWater(const Input& molal, const ElementTable& table);

}  // namespace Brinecast
}  // namespace korvane
