#pragma once
/// Volume of liquid water with dissolved sodium chloride: the water from IAPWS-IF97 Region 1,
/// the salt's contribution from the Spivey-McCain-North (2004) correlation.

#include <cstdint>

namespace korvane {
namespace reference {

/// Molar masses the engine uses, kg/mol (the library's own values, so that a pure-water request
/// gives back exactly the IF97 density; NaCl as Spivey et al. used it).
constexpr double waterMolarMass = 0.01801528;
constexpr double saltMolarMass = 0.0584428;

/// Highest temperature of the brine correlation, K (275 degC).
constexpr double brineMaxTemperatureK = 548.15;
/// NaCl molality beyond which the correlation is extrapolated (warning) and refused, mol/kg.
constexpr double fittedMaxMolality = 5.7;
constexpr double acceptedMaxMolality = 6.0;

/// The answer to one volume request: an error code (0 when none), or the volume with its
/// warnings.
struct BrineVolume {
    std::int32_t error = 0;
    double volumeM3 = 0.0;
    bool pressureRaisedToSaturation = false;
    bool molalityExtrapolated = false;
};

/// Volume in m3 of `waterMol` mol of water with `saltMol` mol of NaCl at `temperatureK` and
/// `pressurePa`. Below the saturation pressure the saturated liquid is reported; every state
/// outside the models' validity is refused with an EngineCode, never extrapolated silently.
BrineVolume brineVolume(double temperatureK, double pressurePa, double waterMol, double saltMol);

}  // namespace reference
}  // namespace korvane
