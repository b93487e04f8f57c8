#pragma once

#include <korvane/Brinecast.h>

#include <optional>
#include <string>

namespace korvane::Brinecast::cli {

/// The unit names an analysis may use, and their conversion to the library's units
/// (K, Pa, `ConcentUnit`). Lookups answer "not known" with an empty optional; callers name the
/// file and field in their message and list what `*Accepted()` returns. Amount and alkalinity
/// units compare without regard to case (lab reports vary it); temperature and pressure units
/// exactly, since "Pa" and "PA" or "MPa" and "mPa" differ by orders of magnitude.
class UnitNames {
public:
    /// An amount unit as a lab writes it, read as a library unit: amount x `factor`, and for a
    /// per-equivalent unit further divided by the |charge| of each ion.
    struct Amount {
        ConcentUnit unit = Undefined;
        double factor = 1.0;
        bool perEquivalent = false;
    };

    /// "mol/kgw", "mmol/kgw", "mmol/L", "mg/L", "mg/kg", compared without regard to case.
    static std::optional<ConcentUnit> concentration(const std::string& name);
    /// The library's units and "g/L" (mg/L x 1000), "ppm" (mg/kg of solution), "meq/L"
    /// (mmol/L x |charge|).
    static std::optional<Amount> amount(const std::string& name);
    /// Alkalinity in meq/L from "meq/L", "mg/L as HCO3-" or "mg/L as CaCO3".
    static std::optional<double> alkalinityMeqPerL(double value, const std::string& unit);
    /// The readable name of a library unit ("mg/L"); "undefined" outside 1 to 5.
    static std::string concentrationName(ConcentUnit unit);
    /// True for the per-litre units, whose conversion needs the brine density.
    static bool isPerLitre(ConcentUnit unit);
    /// True for the mass units, in which "C" is counted as bicarbonate mass.
    static bool isMass(ConcentUnit unit);
    /// The basis of the unit's charge sums: "eq/kgw", "eq/L" or "eq/kg".
    static std::string chargeName(ConcentUnit unit);

    /// Temperature in K from "K", "°C" (also written "C" or "degC") or "°F" ("F", "degF").
    static std::optional<double> toKelvin(double value, const std::string& unit);
    /// Absolute pressure in Pa from "Pa", "kPa", "MPa", "bar", "atm", "psi" ("psia"), or the
    /// gauge pressures "barg" and "psig", which count from one standard atmosphere (101325 Pa).
    static std::optional<double> toPascal(double value, const std::string& unit);
    /// True for "barg" and "psig".
    static bool isGauge(const std::string& unit);

    static std::string concentrationAccepted();
    static std::string alkalinityAccepted();
    static std::string temperatureAccepted();
    static std::string pressureAccepted();
};

}  // namespace korvane::Brinecast::cli
