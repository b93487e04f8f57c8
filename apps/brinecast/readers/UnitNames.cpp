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

// T(K) = (T(°F) - 32) x 5/9 + 273.15.
constexpr double kKelvinPerFahrenheit = 5.0 / 9.0;
constexpr double kKelvinAtZeroFahrenheit = 273.15 - 32.0 * kKelvinPerFahrenheit;

constexpr std::array<ScaleName, 9> kTemperatures{{
    {"K", 1.0, 0.0},
    {"\xC2\xB0" "C", 1.0, 273.15},
    {"\xB0" "C", 1.0, 273.15},  // the degree sign of a Latin-1 (spreadsheet) CSV file
    {"C", 1.0, 273.15},
    {"degC", 1.0, 273.15},
    {"\xC2\xB0" "F", kKelvinPerFahrenheit, kKelvinAtZeroFahrenheit},
    {"\xB0" "F", kKelvinPerFahrenheit, kKelvinAtZeroFahrenheit},
    {"F", kKelvinPerFahrenheit, kKelvinAtZeroFahrenheit},
    {"degF", kKelvinPerFahrenheit, kKelvinAtZeroFahrenheit},
}};

// One pound-force per square inch, exactly: 0.45359237 kg x 9.80665 m/s2 / (0.0254 m)^2.
constexpr double kPascalPerPsi = 6894.757293168361;

// Gauge pressures are read above one standard atmosphere, as oilfield gauges are zeroed.
constexpr double kStandardAtmospherePa = 101325.0;

constexpr std::array<ScaleName, 9> kPressures{{
    {"Pa", 1.0, 0.0},
    {"kPa", 1e3, 0.0},
    {"MPa", 1e6, 0.0},
    {"bar", 1e5, 0.0},
    {"atm", kStandardAtmospherePa, 0.0},
    {"psi", kPascalPerPsi, 0.0},
    {"psia", kPascalPerPsi, 0.0},
    {"barg", 1e5, kStandardAtmospherePa},
    {"psig", kPascalPerPsi, kStandardAtmospherePa},
}};

struct AmountName {
    const char* name;
    UnitNames::Amount amount;
};

// The lab units the library lacks, each read as the nearest library unit.
constexpr std::array<AmountName, 3> kLabAmounts{{
    {"g/L", {MgPerL, 1000.0, false}},
    {"ppm", {MgPerKg, 1.0, false}},  // mg per kg of solution, as labs mean it for brines
    {"meq/L", {MmolPerL, 1.0, true}},
}};

// g/mol per equivalent of alkalinity: CaCO3 (100.0869 g/mol) takes up two protons, HCO3- one.
constexpr double kCaCO3PerEquivalent = 50.0435;
constexpr double kHCO3PerEquivalent = 61.0171;

constexpr std::array<ScaleName, 4> kAlkalinities{{
    {"meq/L", 1.0, 0.0},
    {"mg/L as HCO3-", 1.0 / kHCO3PerEquivalent, 0.0},
    {"mg/L as HCO3", 1.0 / kHCO3PerEquivalent, 0.0},
    {"mg/L as CaCO3", 1.0 / kCaCO3PerEquivalent, 0.0},
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

std::optional<UnitNames::Amount> UnitNames::amount(const std::string& name) {
    if (const std::optional<ConcentUnit> unit = concentration(name)) return Amount{*unit, 1.0, false};
    for (const AmountName& a : kLabAmounts) {
        if (equalIgnoringCase(name, a.name)) return a.amount;
    }
    return std::nullopt;
}

std::optional<double> UnitNames::alkalinityMeqPerL(double value, const std::string& unit) {
    for (const ScaleName& s : kAlkalinities) {
        if (equalIgnoringCase(unit, s.name)) return value * s.factor;
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

bool UnitNames::isGauge(const std::string& unit) { return unit == "barg" || unit == "psig"; }

std::string UnitNames::concentrationAccepted() {
    return "mol/kgw, mmol/kgw, mmol/L, meq/L, mg/L, g/L, mg/kg or ppm (mg/kg of solution)";
}

std::string UnitNames::alkalinityAccepted() { return "meq/L, mg/L as HCO3- or mg/L as CaCO3"; }

std::string UnitNames::temperatureAccepted() { return "K, \xC2\xB0" "C or \xC2\xB0" "F"; }

std::string UnitNames::pressureAccepted() {
    return "Pa, kPa, MPa, bar, atm, psi or psia (absolute), or barg or psig (gauge, above 1 atm)";
}

}  // namespace korvane::Brinecast::cli
