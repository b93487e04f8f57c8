#include "activity/pitzer/ElectrostaticMixing.h"

#include <cmath>

namespace korvane {
namespace Brinecast {

namespace {

/// Chebyshev coefficients of J for x <= 1 and x > 1 (Harvie 1981; Pitzer 1991, table 3).
constexpr double kBelowOne[21] = {
    1.925154014814667,  -0.060076477753119, -0.029779077456514, -0.007299499690937, 0.000388260636404,
    0.000636874599598,  0.000036583601823,  -0.000045036975204, -0.000004537895710, 0.000002937706971,
    0.000000396566462,  -0.000000202099617, -0.000000025267769, 0.000000013522610,  0.000000001229405,
    -0.000000000821969, -0.000000000050847, 0.000000000046333,  0.000000000001943,  -0.000000000002563,
    -0.000000000010991};
constexpr double kAboveOne[21] = {
    0.628023320520852,  0.462762985338493,  0.150044637187895,  -0.028796057604906, -0.036552745910311,
    -0.001668087945272, 0.006519840398744,  0.001130378079086,  -0.000887171310131, -0.000242107641309,
    0.000087294451594,  0.000034682122751,  -0.000004583768938, -0.000003548684306, -0.000000250453880,
    0.000000216991779,  0.000000080779570,  0.000000004558555,  -0.000000006944757, -0.000000002849257,
    0.000000000237816};

}  // namespace

void ElectrostaticMixing::integral(double x, double& j, double& xjPrime) {
    double s, d;
    const double* a;
    if (x <= 1.0) {
        const double root = std::pow(x, 0.2);
        s = 4.0 * root - 2.0;
        d = 0.4 * root;
        a = kBelowOne;
    } else {
        const double root = std::pow(x, -0.1);
        s = (40.0 * root - 22.0) / 9.0;
        d = -(2.0 / 9.0) * root;
        a = kAboveOne;
    }
    double b[23] = {};
    double dk[23] = {};
    for (int k = 20; k >= 0; --k) b[k] = s * b[k + 1] - b[k + 2] + a[k];
    for (int k = 19; k >= 0; --k) dk[k] = b[k + 1] + s * dk[k + 1] - dk[k + 2];
    j = x / 4.0 - 1.0 + 0.5 * (b[0] - b[2]);
    xjPrime = x / 4.0 + d * (dk[0] - dk[2]);
}

ElectrostaticMixing ElectrostaticMixing::of(int zj, int zk, double aphi, double ionicStrength) {
    ElectrostaticMixing mixing;
    if (zj == zk) return mixing;
    const double x = 6.0 * aphi * std::sqrt(ionicStrength);
    double jjk, djk, jjj, djj, jkk, dkk;
    integral(x * zj * zk, jjk, djk);
    integral(x * zj * zj, jjj, djj);
    integral(x * zk * zk, jkk, dkk);
    const double zz = static_cast<double>(zj * zk);
    const double I = ionicStrength;
    mixing.theta = zz * (jjk - 0.5 * jjj - 0.5 * jkk) / (4.0 * I);
    mixing.thetaPrime = zz * (djk - 0.5 * djj - 0.5 * dkk) / (8.0 * I * I) - mixing.theta / I;
    return mixing;
}

}  // namespace Brinecast
}  // namespace korvane
