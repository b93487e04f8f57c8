#pragma once

#include "database/ReactionRecord.h"
#include "minerals/Mineral.h"

#include <korvane/MineralSaturation.h>
#include <korvane/Speciator.h>

#include <string>
#include <vector>

namespace korvane {
namespace Brinecast {

/// The scale minerals and the saturation index of each in a solved brine. Parsed once; immutable
/// afterwards, so any number of threads may share it.
class MineralSet {
public:
    /// The minerals of `json` (a list of mineral records), with the volumes and charges of their
    /// aqueous species taken from the master-species records of `records`. Throws std::logic_error
    /// naming the mineral and the field when a record is malformed or names an unknown species.
    MineralSet(const std::string& json, const std::vector<ReactionRecord>& records);

    /// The minerals compiled into the library, over the embedded reaction records; built on first use.
    static const MineralSet& embedded();

    const std::vector<Mineral>& minerals() const { return minerals_; }
    /// Name of the aqueous species a Mineral::Term refers to by a non-negative index ("Ba+2").
    const std::string& speciesName(std::int32_t index) const { return species_.at(static_cast<std::size_t>(index)).name; }

    /// Every mineral whose aqueous species all have a positive molality in `result`, in data order,
    /// at `temperatureK` (K) and `pressurePa` (Pa). log K is corrected for pressure where the
    /// result's activity model corrects its species (Debye–Hückel), from the same molar volumes.
    std::vector<MineralSaturation> saturation(const Result& result, double temperatureK, double pressurePa) const;

private:
    /// A master species that some dissolution produces.
    struct AqueousSpecies {
        std::string name;
        int charge = 0;
        std::vector<double> volumeParameters;  ///< the record's "Vm"
    };

    /// Index of `name` among species_, added from its master record on first use; below
    /// Mineral::kWater when `records` has no master record of that name.
    std::int32_t speciesIndex(const std::string& name, const std::vector<ReactionRecord>& records);
    /// log10 K change of every mineral at the result's pressure and ionic strength; empty when none.
    std::vector<double> pressureShifts(const Result& result, const std::vector<double>& logActivity,
                                       double temperatureK, double pressurePa) const;

    std::vector<AqueousSpecies> species_;
    std::vector<Mineral> minerals_;
};

}  // namespace Brinecast
}  // namespace korvane
