#pragma once
/// Whether the Pitzer data cover an analysis, answered from the analysis alone, before (and much
/// faster than) a speciation: a host can then choose ActivityModel::Pitzer where it applies and
/// ActivityModel::DebyeHuckel elsewhere.

#include <korvane/Brinecast.h>
#include <korvane/Export.h>

#include <string>
#include <vector>

namespace korvane {
namespace Brinecast {

/// What the Pitzer data lack for one analysis.
struct PitzerCoverage {
    /// The components ActivityModel::Pitzer refuses, named as its refusal names them ("Zn",
    /// "S(-2)", "Fe(+3)", "Fe(+2) together with C"), in the analysis' order; empty when covered.
    std::vector<std::string> missingComponents;
    /// The scale minerals a Debye–Hückel (or Davies, or ideal) result of the analysis lists that a
    /// Pitzer result cannot ("Siderite", "Strontianite"), in the minerals' data order.
    std::vector<std::string> missingMinerals;
    bool covered() const { return missingComponents.empty(); }
};

/// The coverage of `input` by the Pitzer data. Looks at which elements and gases have a positive
/// amount, not at their values, so it needs neither the density nor the thermodynamic engine;
/// names the table does not know are left to `speciate` to refuse. Thread-safe; the vocabulary
/// it reads is built once per process.
KORVANE_API PitzerCoverage pitzerCoverage(const Input& input);

}  // namespace Brinecast
}  // namespace korvane
