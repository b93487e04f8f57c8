#include "activity/WaterProperties.h"

#include <algorithm>
#include <cmath>

namespace korvane {
namespace Brinecast {

namespace {

// The constants are those the published Debye–Hückel and volume parameters of the reaction
// records were fitted with (PHREEQC's); today's CODATA values would move A and B by 3e-5.
constexpr double kZeroCelsiusK = 273.15;
constexpr double kHighestCelsius = 350.0;
constexpr double kPaPerAtm = 101325.0;
constexpr double kBarPerAtm = 1.01325;
constexpr double kElectronChargeSquaredOverBoltzmann = 1.671008e-3;  // e²/k_B, Gaussian units, cm K
constexpr double kPi = 3.14159265358979;
constexpr double kAvogadro = 6.02252e23;                // 1/mol
constexpr double kGasConstantLitreAtm = 0.0820597;      // L atm/(mol K)
constexpr double kLn10 = 2.302585092994045684;
constexpr double kCalPerBarToCm3 = 41.84004;

// Boiling pressure, Antoine form: ln(p/atm) = A − B/(T − C).
constexpr double kAntoineA = 11.6702;
constexpr double kAntoineB = 3816.44;  // K
constexpr double kAntoineC = 46.13;    // K

// Saturated liquid density, Wagner and Pruss (2002) eq. 2.6.
constexpr double kCriticalK = 647.096;
constexpr double kCriticalDensity = 322.0;  // kg/m3
constexpr double kSaturated[6] = {1.99274064, 1.09965342, -0.510839303, -1.75493479, -45.5170352, -6.7469445e5};
constexpr double kSaturatedPowers[6] = {1.0 / 3.0, 2.0 / 3.0, 5.0 / 3.0, 16.0 / 3.0, 43.0 / 3.0, 110.0 / 3.0};

/// Density above the saturation line: rows p0..p3 of a polynomial in the excess pressure (atm),
/// each a quartic in t (°C).
constexpr double kExcess[4][5] = {
    {5.1880000e-02, -4.1885519e-04, 6.6780748e-06, -3.6648699e-08, 8.3501912e-11},
    {-6.0251348e-06, 3.6696407e-07, -9.2056269e-09, 6.7024182e-11, -1.5947241e-13},
    {-2.2983596e-09, -4.0133819e-10, 1.2619821e-11, -9.8952363e-14, 2.3363281e-16},
    {7.0517647e-11, 6.8566831e-12, -2.2829750e-13, 1.8113313e-15, -4.2475324e-18},
};
constexpr double kExcessOffsetAtm = 1e-6;  // keeps sqrt(dp) differentiable on the saturation line

// Dielectric constant, Bradley and Pitzer (1979).
constexpr double kU[9] = {3.4279e2, -5.0866e-3, 9.469e-7, -2.0525, 3.1159e3, -1.8289e2, -8.0325e3, 4.2142e6, 2.1417};

double quartic(const double* c, double t) { return c[0] + t * (c[1] + t * (c[2] + t * (c[3] + t * c[4]))); }

}  // namespace

WaterProperties WaterProperties::at(double temperatureK, double pressurePa) {
    WaterProperties water;
    water.temperatureK = temperatureK;
    const double t = std::min(temperatureK - kZeroCelsiusK, kHighestCelsius);
    const double T = t + kZeroCelsiusK;

    water.saturationPressureAtm = std::exp(kAntoineA - kAntoineB / (T - kAntoineC));
    water.pressureAtm = std::max(pressurePa / kPaPerAtm, water.saturationPressureAtm);

    const double theta = 1.0 - T / kCriticalK;
    double saturated = 1.0;
    for (int i = 0; i < 6; ++i) saturated += kSaturated[i] * std::pow(theta, kSaturatedPowers[i]);
    saturated *= kCriticalDensity;
    double p[4];
    for (int k = 0; k < 4; ++k) p[k] = quartic(kExcess[k], t);
    const double dp = water.pressureAtm - water.saturationPressureAtm + kExcessOffsetAtm;
    const double root = std::sqrt(dp);
    const double density = saturated + dp * (p[0] + dp * (p[1] + dp * (p[2] + root * p[3])));  // kg/m3
    water.densityGPerCm3 = density / 1000.0;
    water.compressibilityPerAtm = (p[0] + dp * (2.0 * p[1] + dp * (3.0 * p[2] + 3.5 * root * p[3]))) / density;

    const double pressureBar = kBarPerAtm * water.pressureAtm;
    const double d1000 = kU[0] * std::exp(T * (kU[1] + T * kU[2]));
    const double c = kU[3] + kU[4] / (kU[5] + T);
    const double b = kU[6] + kU[7] / T + kU[8] * T;
    const double eps = d1000 + c * std::log((b + pressureBar) / (b + 1000.0));
    water.dielectricConstant = eps;
    const double dLnEpsPerAtm = c / (b + pressureBar) * kBarPerAtm / eps;

    const double q = kElectronChargeSquaredOverBoltzmann / (eps * T);                      // cm
    const double kappa = std::sqrt(8.0 * kPi * kAvogadro * q * water.densityGPerCm3 / 1000.0);  // 1/cm (kg/mol)^0.5
    water.debyeHuckelA = kappa * q / (2.0 * kLn10);
    water.debyeHuckelB = kappa / 1e8;
    water.volumeSlope =
        kappa * q * kGasConstantLitreAtm * 1000.0 * T * (dLnEpsPerAtm - water.compressibilityPerAtm / 3.0);
    water.bornFunction = c / (b + pressureBar) / (eps * eps) * kCalPerBarToCm3;
    return water;
}

}  // namespace Brinecast
}  // namespace korvane
