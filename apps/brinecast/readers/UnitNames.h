#pragma once

#include <korvane/Brinecast.h>

#include <optional>
#include <string>

namespace korvane::Brinecast::cli {

/// The unit names an analysis may use, and their conversion to the library's units
/// (K, Pa, `ConcentUnit`). Lookups answer "not known" with an empty optional; callers name the
/// file and field in their message and list what `*Accepted()` returns.
class UnitNames {
public:
    /// "mol/kgw", "mmol/kgw", "mmol/L", "mg/L", "mg/kg", compared without regard to case.
    static std::optional<ConcentUnit> concentration(const std::string& name);
    /// The readable name of a library unit ("mg/L"); "undefined" outside 1 to 5.
    static std::string concentrationName(ConcentUnit unit);
    /// True for the per-litre units, whose conversion needs the brine density.
    static bool isPerLitre(ConcentUnit unit);
    /// True for the mass units, in which "C" is counted as bicarbonate mass.
    static bool isMass(ConcentUnit unit);
    /// The basis of the unit's charge sums: "eq/kgw", "eq/L" or "eq/kg".
    static std::string chargeName(ConcentUnit unit);

    /// Temperature in K from "K" or "°C" (also written "C" or "degC").
    static std::optional<double> toKelvin(double value, const std::string& unit);
    /// Absolute pressure in Pa from "Pa", "kPa", "bar", "MPa" or "psi" ("psia").
    static std::optional<double> toPascal(double value, const std::string& unit);

    static std::string concentrationAccepted();
    static std::string temperatureAccepted();
    static std::string pressureAccepted();
};

}  // namespace korvane::Brinecast::cli
