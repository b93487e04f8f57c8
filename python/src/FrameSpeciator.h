#pragma once

#include "FrameColumns.h"

#include "brinecast/calculation/AnalysisResult.h"
#include "brinecast/calculation/Calculator.h"
#include "brinecast/readers/ComponentNames.h"

#include <korvane/Speciator.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace korvane::Brinecast::python {

/// What a Speciator is built from; everything else it holds is derived, so this is also what
/// travels when it is pickled.
struct FrameSettings {
    SolveOptions solve;                      ///< its activity model is unused: `activity` decides
    cli::ActivityChoice activity;            ///< a fixed model, or Pitzer where its data cover the row
    std::string engineDirectory;             ///< empty: the one built or installed with brinecast
    /// Element or ion that cancels each charge imbalance: added to the analysis, or, in a row with
    /// a measured pH, adjusted by the library to close the balance at that pH.
    std::optional<std::string> balanceWith;
};

/// One row of a table: as read (and balanced), and what the library made of it.
struct FrameRow {
    cli::AnalysisResult result;      ///< analysis, status, message, pH and diagnostics
    std::vector<NameValue> species;  ///< molalities (mol/kgw), empty unless calculated
    std::vector<NameValue> saturation;  ///< saturation index per mineral, empty unless calculated
    /// "alkalinity_eq_per_kgw" of the result, with "derived_carbon_mol_per_kgw" and
    /// "balance_adjustment_mol_per_kgw" when the row imposed them; empty unless calculated.
    std::vector<NameValue> measured;
    Constraints constraints;         ///< the row's measured pH and alkalinity, and its closing ion
    Input input;                     ///< the library's input, built with the row on its thread
    cli::ActivityChoice::Decision decision;  ///< the row's activity model, and why
};

class FrameReader;

/// Speciates tables of analyses read as the command line reads them, with one library batch
/// on many threads. Immutable once built: any number of threads may call it at once.
class FrameSpeciator {
public:
    /// Throws `InputError` when `balanceWith` is no element or ion to balance with.
    explicit FrameSpeciator(FrameSettings settings);

    const FrameSettings& settings() const { return settings_; }
    const cli::ComponentNames& names() const { return *names_; }

    /// One result per row of rows `first` to `first + count - 1`, in row order; a bad row is
    /// kept with its status and message. `threads` 0: one per core. Throws `InputError` for a
    /// column no analysis can have. A large table goes in parts, so that the rows in flight
    /// stay in the cache rather than in fresh pages.
    std::vector<FrameRow> speciate(const FrameColumns& columns, std::size_t first, std::size_t count,
                                   unsigned threads) const;

    /// The command line's settings, for keywords a caller leaves out.
    static FrameSettings defaults();

private:
    /// Adds the balancing ion to a row's analysis, or marks the row invalid when it cannot.
    void balance(cli::AnalysisResult& r) const;
    /// Reads, balances and settles row `row` into the library's input, constraints and model.
    void prepare(const FrameReader& reader, std::size_t row, FrameRow& out) const;
    /// The activity model for a prepared row.
    cli::ActivityChoice::Decision decide(const FrameRow& row) const;
    /// Takes the library's answer for a row into it.
    void record(FrameRow& row, BatchItem& item) const;

    FrameSettings settings_;
    std::shared_ptr<const cli::ComponentNames> names_;
    std::optional<std::string> balancingElement_;
    /// For the command line's conversion of an analysis into the library's input.
    std::shared_ptr<const cli::Calculator> inputs_;
    Speciator speciator_;
};

}  // namespace korvane::Brinecast::python
