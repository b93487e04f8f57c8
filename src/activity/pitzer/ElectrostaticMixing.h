#pragma once

namespace korvane {
namespace Brinecast {

/// The higher-order electrostatic mixing term of two ions of the same sign and unlike charge
/// (Pitzer 1975): what the Debye–Hückel term leaves out when, say, Na+ and Ca+2 share a brine.
/// Depends only on the charges, the Debye–Hückel slope and the ionic strength.
struct ElectrostaticMixing {
    double theta = 0.0;       ///< Eθ (kg/mol)
    double thetaPrime = 0.0;  ///< dEθ/dI (kg/mol)²

    /// Eθ and Eθ' of charges `zj`, `zk` (signed, same sign) at osmotic slope `aphi`
    /// ((kg/mol)^0.5) and ionic strength `ionicStrength` (mol/kgw, > 0); zero for equal charges.
    static ElectrostaticMixing of(int zj, int zk, double aphi, double ionicStrength);

    /// J(x) and x·J'(x) of the mixing integral, by Harvie's (1981) Chebyshev approximation.
    static void integral(double x, double& j, double& xjPrime);
};

}  // namespace Brinecast
}  // namespace korvane
