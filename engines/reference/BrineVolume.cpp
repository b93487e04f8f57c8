#include "BrineVolume.h"

#include "EngineCodes.h"
#include "Iapws97.h"
#include "SpiveyBrine.h"

#include <algorithm>
#include <cmath>

namespace korvane {
namespace reference {
namespace {

/// The first domain rule that the request breaks, or 0.
std::int32_t domainError(double temperatureK, double pressurePa, double waterMol, double saltMol) {
    if (!std::isfinite(temperatureK) || !std::isfinite(pressurePa) || !std::isfinite(waterMol) ||
        !std::isfinite(saltMol)) {
        return NotFinite;
    }
    if (waterMol <= 0.0 || saltMol < 0.0) return AmountOutOfRange;
    if (temperatureK < region1MinTemperatureK) return TemperatureBelowRange;
    if (saltMol > 0.0 && temperatureK > brineMaxTemperatureK) return TemperatureAboveBrineRange;
    if (temperatureK > region1MaxTemperatureK) return TemperatureAboveWaterRange;
    if (pressurePa <= 0.0 || pressurePa > region1MaxPressurePa) return PressureOutOfRange;
    return 0;
}

}  // namespace

BrineVolume brineVolume(double temperatureK, double pressurePa, double waterMol, double saltMol) {
    BrineVolume result;
    result.error = domainError(temperatureK, pressurePa, waterMol, saltMol);
    if (result.error != 0) return result;

    // Only liquid can be asked for: below its boiling pressure, water is taken as saturated liquid.
    const double effectivePressurePa = std::max(pressurePa, saturationPressure(temperatureK));
    result.pressureRaisedToSaturation = pressurePa < effectivePressurePa;

    const double waterMassKg = waterMol * waterMolarMass;
    result.volumeM3 = waterMassKg * region1SpecificVolume(temperatureK, effectivePressurePa);
    if (saltMol == 0.0) return result;

    const double molality = saltMol / waterMassKg;  // mol/kg of water
    if (molality > acceptedMaxMolality) {
        result.error = MolalityAboveRange;
        return result;
    }
    result.molalityExtrapolated = molality > fittedMaxMolality;
    // The salt's share is the brine-minus-water volume, both from Spivey, so that the
    // correlation's own pure-water error cancels and no salt gives back the IF97 volume exactly.
    const SpiveyDensities rho =
        spiveyDensities(temperatureK - 273.15, effectivePressurePa / 1e6, molality);  // g/cm3
    const double saltMassKg = saltMol * saltMolarMass;
    result.volumeM3 += ((waterMassKg + saltMassKg) / rho.brine - waterMassKg / rho.water) / 1000.0;
    return result;
}

}  // namespace reference
}  // namespace korvane
