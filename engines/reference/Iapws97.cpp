#include "Iapws97.h"

#include <cmath>

namespace korvane {
namespace reference {
namespace {

constexpr double gasConstant = 461.526;  // J/(kg K), specific gas constant of water in IF97
constexpr double region1PressureStar = 16.53e6;  // Pa
constexpr double region1TemperatureStar = 1386.0;  // K

struct Region1Term {
    int I;
    int J;
    double n;
};

// IAPWS-IF97, Table 2: coefficients and exponents of the Region 1 Gibbs free energy.
constexpr Region1Term region1Terms[34] = {
    {0, -2, 0.14632971213167e0},    {0, -1, -0.84548187169114e0},   {0, 0, -0.37563603672040e1},
    {0, 1, 0.33855169168385e1},     {0, 2, -0.95791963387872e0},    {0, 3, 0.15772038513228e0},
    {0, 4, -0.16616417199501e-1},   {0, 5, 0.81214629983568e-3},    {1, -9, 0.28319080123804e-3},
    {1, -7, -0.60706301565874e-3},  {1, -1, -0.18990068218419e-1},  {1, 0, -0.32529748770505e-1},
    {1, 1, -0.21841717175414e-1},   {1, 3, -0.52838357969930e-4},   {2, -3, -0.47184321073267e-3},
    {2, 0, -0.30001780793026e-3},   {2, 1, 0.47661393906987e-4},    {2, 3, -0.44141845330846e-5},
    {2, 17, -0.72694996297594e-15}, {3, -4, -0.31679644845054e-4},  {3, 0, -0.28270797985312e-5},
    {3, 6, -0.85205128120103e-9},   {4, -5, -0.22425281908000e-5},  {4, -2, -0.65171222895601e-6},
    {4, 10, -0.14341729937924e-12}, {5, -8, -0.40516996860117e-6},  {8, -11, -0.12734301741641e-8},
    {8, -6, -0.17424871230634e-9},  {21, -29, -0.68762131295531e-18}, {23, -31, 0.14478307828521e-19},
    {29, -38, 0.26335781662795e-22}, {30, -39, -0.11947622640071e-22}, {31, -40, 0.18228094581404e-23},
    {32, -41, -0.93537087292458e-25},
};

// IAPWS-IF97, Table 34: coefficients of the saturation-pressure equation (n1 .. n10).
constexpr double region4[11] = {0.0,
                                0.11670521452767e4,  -0.72421316703206e6, -0.17073846940092e2,
                                0.12020824702470e5,  -0.32325550322333e7, 0.14915108613530e2,
                                -0.48232657361591e4, 0.40511340542057e6,  -0.23855557567849e0,
                                0.65017534844798e3};

/// gamma and its derivatives by the reduced pressure pi and the inverse reduced temperature tau.
struct GibbsDerivatives {
    double g = 0, gPi = 0, gPiPi = 0, gTau = 0, gTauTau = 0, gPiTau = 0;
};

GibbsDerivatives gibbs(double pi, double tau) {
    const double a = 7.1 - pi;
    const double b = tau - 1.222;
    GibbsDerivatives d;
    for (const Region1Term& t : region1Terms) {
        const double aI = std::pow(a, t.I), bJ = std::pow(b, t.J);
        const double aI1 = std::pow(a, t.I - 1), bJ1 = std::pow(b, t.J - 1);
        d.g += t.n * aI * bJ;
        d.gPi -= t.n * t.I * aI1 * bJ;
        d.gPiPi += t.n * t.I * (t.I - 1) * std::pow(a, t.I - 2) * bJ;
        d.gTau += t.n * aI * t.J * bJ1;
        d.gTauTau += t.n * aI * t.J * (t.J - 1) * std::pow(b, t.J - 2);
        d.gPiTau -= t.n * t.I * aI1 * t.J * bJ1;
    }
    return d;
}

}  // namespace

double region1SpecificVolume(double temperatureK, double pressurePa) {
    const double pi = pressurePa / region1PressureStar;
    const double tau = region1TemperatureStar / temperatureK;
    const double a = 7.1 - pi;
    const double b = tau - 1.222;
    double gPi = 0.0;
    for (const Region1Term& t : region1Terms) {
        if (t.I != 0) gPi -= t.n * t.I * std::pow(a, t.I - 1) * std::pow(b, t.J);
    }
    return gasConstant * temperatureK * gPi / region1PressureStar;
}

Region1Properties region1Properties(double temperatureK, double pressurePa) {
    const double pi = pressurePa / region1PressureStar;
    const double tau = region1TemperatureStar / temperatureK;
    const GibbsDerivatives d = gibbs(pi, tau);
    const double rt = gasConstant * temperatureK;  // J/kg
    Region1Properties p{};
    p.specificVolume = rt * d.gPi / region1PressureStar;
    p.enthalpy = rt * tau * d.gTau / 1000.0;
    p.internalEnergy = rt * (tau * d.gTau - pi * d.gPi) / 1000.0;
    p.entropy = gasConstant * (tau * d.gTau - d.g) / 1000.0;
    p.isobaricHeatCapacity = -gasConstant * tau * tau * d.gTauTau / 1000.0;
    const double cross = d.gPi - tau * d.gPiTau;
    p.speedOfSound = std::sqrt(rt * d.gPi * d.gPi / (cross * cross / (tau * tau * d.gTauTau) - d.gPiPi));
    return p;
}

double saturationPressure(double temperatureK) {
    const double* n = region4;
    const double theta = temperatureK + n[9] / (temperatureK - n[10]);
    const double A = theta * theta + n[1] * theta + n[2];
    const double B = n[3] * theta * theta + n[4] * theta + n[5];
    const double C = n[6] * theta * theta + n[7] * theta + n[8];
    const double root = 2.0 * C / (-B + std::sqrt(B * B - 4.0 * A * C));  // MPa^(1/4)
    const double squared = root * root;
    return squared * squared * 1e6;
}

}  // namespace reference
}  // namespace korvane
