#pragma once

namespace korvane {
namespace Brinecast {

/// Pure water at a brine's temperature and pressure, as the activity models and the molar volumes
/// need it. Water below its boiling pressure is taken at the boiling pressure, and temperatures
/// above 350 °C at 350 °C: the fits below are not made for steam.
struct WaterProperties {
    double temperatureK = 0.0;           ///< the brine's temperature, not clamped (K)
    double pressureAtm = 0.0;            ///< effective pressure: the brine's, or the boiling pressure when higher (atm)
    double saturationPressureAtm = 0.0;  ///< boiling pressure at the (clamped) temperature (atm)
    double densityGPerCm3 = 0.0;         ///< density of pure water (g/cm3)
    double compressibilityPerAtm = 0.0;  ///< d ln(density)/dP (1/atm)
    double dielectricConstant = 0.0;     ///< relative permittivity (-)
    double debyeHuckelA = 0.0;           ///< (kg/mol)^0.5
    double debyeHuckelB = 0.0;           ///< (kg/mol)^0.5 per Angstrom
    double volumeSlope = 0.0;            ///< Debye–Hückel limiting slope of molar volumes, cm3/mol (kg/mol)^0.5
    double bornFunction = 0.0;           ///< (d eps/dP)/eps² in cm3 per cal·bar, multiplies a species' Born parameter

    /// The properties at `temperatureK` (K) and `pressurePa` (Pa).
    static WaterProperties at(double temperatureK, double pressurePa);
};

}  // namespace Brinecast
}  // namespace korvane
