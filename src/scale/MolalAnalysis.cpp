#include "scale/MolalAnalysis.h"

#include "database/ElementTable.h"
#include "database/SpeciesModel.h"
#include "engine/ProcessedInput.h"
#include "interface/AnalysisRangeCheck.h"

namespace korvane {
namespace Brinecast {

namespace {
constexpr double kGramsPerKilogram = 1000.0;
}

Input molalAnalysis(const Input& analysis, const SpeciesModel& model) {
    refuseConditionsOutOfRange(analysis);
    const ProcessedInput processed = processInput(analysis, model);
    refuseAmountsOutOfRange(processed, model.elementTable());
    Input molal = processed.input;
    if (molal.elements.values.empty() || molal.elements.unit == MolPerKgw) return molal;
    for (std::size_t i = 0; i < molal.elements.values.size(); ++i) {
        // Converted from the untouched list: the per-litre sums run over the original values.
        molal.elements.values[i].value = toMolality(processed.input.elements, i, molal.density, model.elementTable());
    }
    molal.elements.unit = MolPerKgw;
    return molal;
}

double solutionMassPerKgWater(const Input& molal, const ElementTable& table) {
    double solutes = 0.0;  // g per kg of water
    for (const NameValue& e : molal.elements.values) solutes += e.value * table.molarMass(e.name);
    for (const NameValue& g : molal.gases.values) solutes += g.value * table.molecularWeight(g.name);
    return 1.0 + solutes / kGramsPerKilogram;
}

}  // namespace Brinecast
}  // namespace korvane
