#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace korvane {
namespace Brinecast {

/// log10 K of a reaction as a function of temperature: the analytic expression when the data
/// give one, else van 't Hoff from 25 °C.
struct PitzerLogK {
    std::array<double, 6> analytic{};  ///< A1..A6 of A1 + A2 T + A3/T + A4 log10 T + A5/T² + A6 T²
    bool hasAnalytic = false;
    double logK25 = 0.0;         ///< log10 K at 298.15 K
    double deltaHKJPerMol = 0.0; ///< reaction enthalpy, kJ/mol
    double at(double temperatureK) const;
};

/// One species of the Pitzer species set. Formed species carry their formation reaction from the
/// master species, written as what they contain: log10 a = log K + Σ count·log10 a(master)
/// + waterCount·log10 a(H2O).
struct PitzerSpecies {
    std::string name;
    int charge = 0;
    bool master = true;
    std::vector<std::pair<std::int32_t, double>> contents;  ///< (master species index, count)
    double waterCount = 0.0;
    PitzerLogK logK;
    std::vector<double> volumeParameters;  ///< a1 a2 a3 a4 W a0 i1 i2 i3 i4; empty: no volume
};

/// A mineral's dissolution into species of the set (and water).
struct PitzerMineral {
    std::string name;
    std::vector<std::pair<std::int32_t, double>> products;  ///< (species index, coefficient)
    double waterCoefficient = 0.0;
    PitzerLogK logK;
    double solidVolumeCm3PerMol = 0.0;
};

/// One virial parameter line: a pair (B0, B1, B2, C0, THETA, LAMBDA) or a triple (ZETA, PSI).
struct PitzerParameter {
    enum class Kind { B0, B1, B2, C0, Theta, Lambda, Zeta, Psi };
    Kind kind = Kind::B0;
    std::array<std::int32_t, 3> species{{-1, -1, -1}};  ///< species indices; the third is -1 for pairs
    std::array<double, 6> coefficients{};              ///< a0..a5 of the temperature function
    /// a0 + a1 (1/T − 1/Tr) + a2 ln(T/Tr) + a3 (T − Tr) + a4 (T² − Tr²) + a5 (1/T² − 1/Tr²); a0
    /// itself within 1 mK of Tr = 298.15 K.
    double at(double temperatureK) const;
};

/// The Harvie–Møller–Weare species, reactions, minerals and virial parameters compiled into the
/// library. Parsed once; immutable afterwards, so any number of threads may share it.
class PitzerDatabase {
public:
    /// Parses `json`; throws std::logic_error naming the record and field when it is malformed.
    explicit PitzerDatabase(const std::string& json);

    /// The embedded data, parsed on first use.
    static const PitzerDatabase& embedded();

    const std::vector<PitzerSpecies>& species() const { return species_; }
    const std::vector<PitzerMineral>& minerals() const { return minerals_; }
    const std::vector<PitzerParameter>& parameters() const { return parameters_; }
    /// Index of species `name`, -1 when the set has none.
    std::int32_t find(const std::string& name) const;

private:
    std::vector<PitzerSpecies> species_;
    std::vector<PitzerMineral> minerals_;
    std::vector<PitzerParameter> parameters_;
};

}  // namespace Brinecast
}  // namespace korvane
