#pragma once
/// Liquid water after the IAPWS Industrial Formulation 1997 (IAPWS-IF97): Region 1 (compressed
/// liquid) and the saturation-pressure equation of Region 4.

namespace korvane {
namespace reference {

/// Lowest and highest temperature of Region 1, K.
constexpr double region1MinTemperatureK = 273.15;
constexpr double region1MaxTemperatureK = 623.15;
/// Highest pressure of Region 1, Pa.
constexpr double region1MaxPressurePa = 100e6;

/// Properties of Region 1 at one state, each in the unit IAPWS publishes its check values in.
struct Region1Properties {
    double specificVolume;        ///< m3/kg
    double enthalpy;              ///< kJ/kg
    double internalEnergy;        ///< kJ/kg
    double entropy;               ///< kJ/(kg K)
    double isobaricHeatCapacity;  ///< kJ/(kg K)
    double speedOfSound;          ///< m/s
};

/// Specific volume in m3/kg of liquid water at `temperatureK` and `pressurePa`. Valid in
/// Region 1: 273.15 K to 623.15 K, saturation pressure to 100 MPa.
double region1SpecificVolume(double temperatureK, double pressurePa);

/// Every Region 1 property for which IAPWS publishes check values; they exercise all 34 terms.
Region1Properties region1Properties(double temperatureK, double pressurePa);

/// Saturation pressure of water in Pa at `temperatureK` (273.15 K to 647.096 K).
double saturationPressure(double temperatureK);

}  // namespace reference
}  // namespace korvane
