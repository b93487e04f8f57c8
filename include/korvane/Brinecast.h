#pragma once
/// The public interface of the brine speciation library: value types and exported functions.
/// Strings and vectors cross this boundary, so a host must use the same C++ standard library
/// (libstdc++) as the library.

#include <korvane/Export.h>
#include <korvane/KorvaneError.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace korvane {
namespace Brinecast {

/// One named amount, in the unit of the list that holds it.
struct NameValue {
    std::string name;  ///< element, gas or species name as the species model spells it
    double value = 0.0;
};

/// Unit of every value of a `ConcentsWithUnit`. Per-litre units (3, 4) need the brine density.
enum ConcentUnit : std::int32_t {
    Undefined = 0,
    MolPerKgw = 1,   ///< mol per kg of water ("mol/kgw"); the unit of every result
    MmolPerKgw = 2,  ///< mmol per kg of water
    MmolPerL = 3,    ///< mmol per litre of solution
    MgPerL = 4,      ///< mg per litre of solution
    MgPerKg = 5,     ///< mg per kg of solution (ppm by mass)
};

/// A list of named amounts sharing one unit.
class KORVANE_API ConcentsWithUnit {
public:
    ConcentsWithUnit();
    ConcentsWithUnit(const ConcentsWithUnit& other);
    /// Takes over the entries (the source is left empty) and copies the unit, which the source keeps.
    ConcentsWithUnit(ConcentsWithUnit&& other) noexcept;
    ~ConcentsWithUnit();
    ConcentsWithUnit& operator=(const ConcentsWithUnit& other);
    ConcentsWithUnit& operator=(ConcentsWithUnit&& other) noexcept;

    /// Entry i, unchecked: keep i below size().
    NameValue& operator[](std::size_t i);
    /// Replaces the entries (unless `values` is this object's own list) and sets the unit.
    void assign(const std::vector<NameValue>& values, ConcentUnit unit);
    NameValue* begin();
    NameValue* end();
    void push_back(const NameValue& value);
    std::uint64_t size();

    std::vector<NameValue> values;
    ConcentUnit unit = Undefined;
};

/// A brine analysis and its conditions. Values <= 0 for temperature, pressure and density stand
/// for "not given" and are defaulted on the library's private copy.
struct Input {
    std::string dllPath;        ///< directory of the thermodynamic engine library; never empty
    double temperature = 0.0;   ///< K; <= 0 becomes 298.15
    double pressure = 0.0;      ///< Pa; <= 0 becomes 101325
    double density = 0.0;       ///< g/cm3; <= 0 is computed (per-litre units) or taken as 1.0
    ConcentsWithUnit elements;  ///< element names of the element table, any unit 1 to 5
    ConcentsWithUnit gases;     ///< "CO2", "H2S"; unit must be MolPerKgw when not empty
};

/// The result of `run`.
struct Output {
    double pH = 0.0;            ///< -log10 of the solved molality of "H+"
    ConcentsWithUnit species;   ///< species molalities (mol/kgw), grouped by basis component
};

/// Speciation of the brine: pH and every species' molality, grouped by basis component.
KORVANE_API Output run(Input input);
/// The pH of the same calculation as `run`.
KORVANE_API double getPH(Input input);

/// Net charge of an element list, equivalents per kg of water; 0.0 when balanced to rounding.
KORVANE_API double getMolarCharge(const ConcentsWithUnit& elements);
/// Amount of `element`, in `unit`, whose ion carries -`charge` equivalents per kg of water.
KORVANE_API double getIonAmountToBalanceCharge(std::string element, ConcentUnit unit, double charge);
/// The element name ("Ca", "S(6)") for a laboratory ion name ("Ca+2", "SO4-2").
KORVANE_API std::string getLabIonElement(const std::string& ion);
/// The counted-charge form ("SO4-2") of a spread-charge ion name ("SO4--").
KORVANE_API std::string toCountedChargeName(const std::string& name);

}  // namespace Brinecast
}  // namespace korvane

// Speciation with a choice of solver, diagnostics and a reusable, thread-safe Speciator.
#include <korvane/Speciator.h>
// Which analyses the Pitzer data cover.
#include <korvane/PitzerCoverage.h>
