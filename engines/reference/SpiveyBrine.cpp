#include "SpiveyBrine.h"

#include <cmath>

namespace korvane {
namespace reference {
namespace {

/// f(t) = (a1 x^2 + a2 x + a3) / (a4 x^2 + a5 x + 1) with x = t / 100, t in degC.
struct TemperatureFunction {
    double a1, a2, a3, a4, a5;

    double operator()(double temperatureC) const {
        const double x = temperatureC / 100.0;
        return (a1 * x * x + a2 * x + a3) / (a4 * x * x + a5 * x + 1.0);
    }
};

// Spivey, McCain and North (2004), the 2004 coefficients.
constexpr TemperatureFunction waterDensity70MPa{-0.127213, 0.645486, 1.03265, -0.070291, 0.639589};  // g/cm3
constexpr TemperatureFunction waterE{4.221, -3.478, 6.221, 0.5182, -0.4405};
constexpr TemperatureFunction waterF{-11.403, 29.932, 27.952, 0.20684, 0.3768};
constexpr TemperatureFunction densityM2{-7.925e-5, -1.93e-6, -3.4254e-4, 0.0, 0.0};  // g/cm3 per (mol/kg)^2
constexpr TemperatureFunction densityM3Half{1.0998e-3, -2.8755e-3, -3.5819e-3, -0.72877, 1.92016};
constexpr TemperatureFunction densityM1{-7.6402e-3, 3.6963e-2, 4.36083e-2, -0.333661, 1.185685};
constexpr TemperatureFunction densityMHalf{3.746e-4, -3.328e-4, -3.346e-4, 0.0, 0.0};
constexpr TemperatureFunction compressibilityEM1{0.0, 0.0, 0.1353, 0.0, 0.0};
constexpr TemperatureFunction compressibilityFM3Half{-1.409, -0.361, -0.2532, 0.0, 9.216};
constexpr TemperatureFunction compressibilityFM1{0.0, 5.614, 4.6782, -0.307, 2.6069};
constexpr TemperatureFunction compressibilityFMHalf{-0.1127, 0.2047, -0.0452, 0.0, 0.0};

constexpr double referencePressureMPa = 70.0;

/// Integral of the compressibility (1/70) / (E p/70 + F) over pressure, in MPa.
double compressibilityIntegral(double E, double F, double pressureMPa) {
    return std::log(std::fabs(E * pressureMPa / referencePressureMPa + F)) / E;
}

/// Density at `pressureMPa` from the density at 70 MPa and the compressibility coefficients.
double densityAt(double density70MPa, double E, double F, double pressureMPa) {
    return density70MPa * std::exp(compressibilityIntegral(E, F, pressureMPa) -
                                   compressibilityIntegral(E, F, referencePressureMPa));
}

}  // namespace

SpiveyDensities spiveyDensities(double temperatureC, double pressureMPa, double molality) {
    const double t = temperatureC;
    const double root = std::sqrt(molality);
    const double water70 = waterDensity70MPa(t);
    const double Ew = waterE(t), Fw = waterF(t);
    const double brine70 = water70 + densityM2(t) * molality * molality + densityM3Half(t) * molality * root +
                           densityM1(t) * molality + densityMHalf(t) * root;
    const double Eb = Ew + compressibilityEM1(t) * molality;
    const double Fb = Fw + compressibilityFM3Half(t) * molality * root + compressibilityFM1(t) * molality +
                      compressibilityFMHalf(t) * root;
    return {densityAt(water70, Ew, Fw, pressureMPa), densityAt(brine70, Eb, Fb, pressureMPa)};
}

}  // namespace reference
}  // namespace korvane
