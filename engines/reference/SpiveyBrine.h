#pragma once
/// Densities of pure water and of NaCl brine after Spivey, McCain and North (2004), "Estimating
/// density, formation volume factor, compressibility, methane solubility, and viscosity for
/// oilfield brines at temperatures from 0 to 275 degC, pressures to 200 MPa, and salinities to
/// 5.7 mole/kg", J. Can. Pet. Technol. 43(7), 52-60. The 2004 coefficient set, not the 2011
/// revision of McCain, Spivey and Lenn.

namespace korvane {
namespace reference {

/// Both densities in g/cm3, at one temperature and pressure.
struct SpiveyDensities {
    double water;  ///< pure water as the correlation sees it
    double brine;  ///< water with the given NaCl molality
};

/// The correlation at `temperatureC` (degC), `pressureMPa` (MPa) and NaCl `molality` (mol per
/// kg of water). Fitted for 0 to 275 degC, up to 200 MPa, 0 to 5.7 mol/kg.
SpiveyDensities spiveyDensities(double temperatureC, double pressureMPa, double molality);

}  // namespace reference
}  // namespace korvane
