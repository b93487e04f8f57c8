#pragma once

#include <korvane/Brinecast.h>

#include "database/SpeciesModel.h"

#include <string>
#include <unordered_map>

namespace korvane {
namespace Brinecast {

/// The density of a brine given per litre of solution (mmol/L or mg/L) when none is known: the
/// thermodynamic engine gives the volume of one litre's water with the brine's salt, and the
/// density is the brine's mass over that volume. The salt is deliberately reduced to NaCl.
class SaltDensityCalculator {
public:
    /// Amounts by name: mol per litre of solution for elements and salts; in a mixture handed to
    /// the engine, mol of each component with "WATER" among them.
    using AmountMap = std::unordered_map<std::string, double>;

    /// Locates the engine library in input.dllPath unless the process has loaded one (throws
    /// std::runtime_error "Korvane dll could not be loaded"), then takes the element amounts
    /// (throws UnreacheableException unless the unit is mmol/L or mg/L). Both references must
    /// outlive the calculator.
    SaltDensityCalculator(const Input& input, const SpeciesModel& model);
    SaltDensityCalculator(const SaltDensityCalculator&) = delete;
    SaltDensityCalculator& operator=(const SaltDensityCalculator&) = delete;

    /// The brine density in g/cm3 at input.temperature (K) and input.pressure (Pa).
    virtual double density();
    virtual ~SaltDensityCalculator();
    /// Volume in m3 of the mixture `amounts` (mol) as the engine reports it. Throws KorvaneError
    /// naming the engine step that failed, with the engine's codes as the nested exception.
    virtual double mixtureVolume(const AmountMap& amounts);
    /// Mass in g of one litre of brine holding `waterAmount` mol of water and the input's elements.
    virtual double solutionMass(double waterAmount);
    /// Salt amounts (mol/L) from the element amounts: only sodium, only with chloride.
    virtual void formSalts();
    /// Forms the chloride and bromide salts of `cation` in proportion to the two anion amounts
    /// (mol/L), and takes what they use from those amounts; `count` anions per cation.
    virtual void pairSalt(const std::string& cation, double& anionAmount, double& bromideAmount, int count);
    virtual AmountMap& getSaltAmounts();
    /// Element amounts in mol/L from the input's list.
    virtual void fillElementAmounts();
    virtual AmountMap& getElementAmounts();

private:
    const Input& input_;
    AmountMap elementAmounts_;  ///< mol/L
    AmountMap saltAmounts_;     ///< mol/L
    const SpeciesModel& model_;
};

}  // namespace Brinecast
}  // namespace korvane
