#pragma once

#include "activity/WaterProperties.h"

#include <cmath>
#include <vector>

namespace korvane {
namespace Brinecast {

/// Partial molar volume of one aqueous species (cm3/mol) from its record's "Vm" parameters
/// a1 a2 a3 a4 W a0 i1 i2 i3 i4: the Helgeson–Kirkham–Flowers volume at infinite dilution with
/// its Born term, then for ions the Redlich–Meyer limiting law and an empirical ionic-strength
/// term (Appelo, Parkhurst and Post 2014). Prepared for one temperature and pressure, so that only
/// the ionic-strength terms are left for each iteration.
class MolarVolume {
public:
    /// No parameters, or a1 = 0, mean no volume at all: the species does not move log K.
    MolarVolume(const std::vector<double>& parameters, int charge, const WaterProperties& water);

    /// cm3/mol at ionic strength `ionicStrength` (mol/kgw), `rootIonicStrength` its square root.
    double at(double ionicStrength, double rootIonicStrength) const {
        if (!charged_) return infiniteDilution_;
        double v = infiniteDilution_ + limitingSlope_ * rootIonicStrength / (1.0 + sizeB_ * rootIonicStrength);
        if (ionTerm_ != 0.0) v += ionTerm_ * (ionPower_ == 1.0 ? ionicStrength : std::pow(ionicStrength, ionPower_));
        return v;
    }

private:
    double infiniteDilution_ = 0.0;  ///< cm3/mol
    bool charged_ = false;
    double limitingSlope_ = 0.0;  ///< z²/2·A_V
    double sizeB_ = 0.0;          ///< a0·B, 0 when a0 is too small to count
    double ionTerm_ = 0.0;        ///< i1 + i2/Ts + i3·Ts
    double ionPower_ = 1.0;       ///< i4
};

}  // namespace Brinecast
}  // namespace korvane
