#include "brinecast/readers/UnitNames.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <utility>

namespace korvane::Brinecast::cli {
namespace {

struct ConcentrationName {
    const char* name;
    ConcentUnit unit;
};

// In enumerator order, so that the accepted list reads like the library's units.
constexpr std::array<ConcentrationName, 5> kConcentrations{{
    {"mol/kgw", MolPerKgw},
    {"mmol/kgw", MmolPerKgw},
    {"mmol/L", MmolPerL},
    {"mg/L", MgPerL},
    {"mg/kg", MgPerKg},
}};

struct ScaleName {
    const char* name;
    double factor;  // to the library unit
    double offset;  // added after scaling
};

constexpr std::array<ScaleName, 5> kTemperatures{{
    {"K", 1.0, 0.0},
    {"\xC2\xB0" "C", 1.0, 273.15},
    {"\xB0" "C", 1.0, 273.15},  // the degree sign of a Latin-1 (spreadsheet) CSV file
    {"C", 1.0, 273.15},
    {"degC", 1.0, 273.15},
}};

// One pound-force per square inch, exactly: 0.45359237 kg x 9.80665 m/s2 / (0.0254 m)^2.
constexpr double kPascalPerPsi = 6894.757293168361;

constexpr std::array<ScaleName, 6> kPressures{{
    {"Pa", 1.0, 0.0},
    {"kPa", 1e3, 0.0},
    {"bar", 1e5, 0.0},
    {"MPa", 1e6, 0.0},
    {"psi", kPascalPerPsi, 0.0},
    {"psia", kPascalPerPsi, 0.0},
}};

bool equalIgnoringCase(const std::string& a, const char* b) {
    const std::string other(b);
    return a.size() == other.size() &&
           std::equal(a.begin(), a.end(), other.begin(), [](char x, char y) {
               return std::tolower(static_cast<unsigned char>(x)) ==
                      std::tolower(static_cast<unsigned char>(y));
           });
}

template <std::size_t N>
std::optional<double> convert(double value, const std::string& unit,
                              const std::array<ScaleName, N>& table) {
    for (const ScaleName& s : table) {
        if (unit == s.name) return value * s.factor + s.offset;
    }
    return std::nullopt;
}

}  // namespace

std::optional<ConcentUnit> UnitNames::concentration(const std::string& name) {
    for (const ConcentrationName& c : kConcentrations) {
        if (equalIgnoringCase(name, c.name)) return c.unit;
    }
    return std::nullopt;
}

std::string UnitNames::concentrationName(ConcentUnit unit) {
    for (const ConcentrationName& c : kConcentrations) {
        if (c.unit == unit) return c.name;
    }
    return "undefined";
}

bool UnitNames::isPerLitre(ConcentUnit unit) { return unit == MmolPerL || unit == MgPerL; }

bool UnitNames::isMass(ConcentUnit unit) { return unit == MgPerL || unit == MgPerKg; }

std::string UnitNames::chargeName(ConcentUnit unit) {
    // The library's charge sums read a per-litre or per-kg-of-solution value as if it were per
    // kg of water, so the sum is per litre or per kg of solution in those units.
    if (isPerLitre(unit)) return "eq/L";
    if (unit == MgPerKg) return "eq/kg";
    return "eq/kgw";
}

std::optional<double> UnitNames::toKelvin(double value, const std::string& unit) {
    return convert(value, unit, kTemperatures);
}

std::optional<double> UnitNames::toPascal(double value, const std::string& unit) {
    return convert(value, unit, kPressures);
}

std::string UnitNames::concentrationAccepted() {
    return "mol/kgw, mmol/kgw, mmol/L, mg/L or mg/kg";
}

std::string UnitNames::temperatureAccepted() { return "K or \xC2\xB0" "C"; }

std::string UnitNames::pressureAccepted() { return "Pa, kPa, bar, MPa or psi (absolute)"; }

}  // namespace korvane::Brinecast::cli
