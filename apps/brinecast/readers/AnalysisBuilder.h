#pragma once

#include "brinecast/readers/Analysis.h"
#include "brinecast/readers/ComponentNames.h"
#include "brinecast/readers/UnitNames.h"

#include <optional>
#include <string>
#include <vector>

namespace korvane::Brinecast::cli {

/// Collects the fields of one analysis, whatever file format they come from, and refuses each
/// bad one at once with an `InputError` that reads "<source>: <field>: <problem>; <what would
/// be accepted>". `where` arguments name the field as the file does ("column \"Ca++\"").
class AnalysisBuilder {
public:
    /// `source` is "file" or "file:line"; `defaultName` names an analysis that gives no name.
    AnalysisBuilder(const ComponentNames& names, std::string source, std::string defaultName);

    void name(const std::string& value) { analysis_.name = value; }
    void description(const std::string& value) { analysis_.description = value; }
    /// `where` names the value's field, `unitWhere` the unit's (the same field in JSON, another
    /// column in CSV), so that each problem is blamed on the cell that holds it.
    void temperature(double value, const std::string& unit, const std::string& where,
                     const std::string& unitWhere);
    void pressure(double value, const std::string& unit, const std::string& where,
                  const std::string& unitWhere);
    /// g/cm3.
    void density(double value, const std::string& where);
    void unit(const std::string& name, const std::string& where);
    /// An element, lab ion or carbonate amount in the analysis' unit. A zero amount is an absent
    /// component and is left out: the library cannot start from a total of exactly zero.
    void element(const std::string& name, double value, const std::string& where);
    /// The measured pH, 0 to 14.
    void measuredPH(double value, const std::string& where);
    /// The measured alkalinity in a unit of `UnitNames::alkalinityMeqPerL`.
    void alkalinity(double value, const std::string& unit, const std::string& where,
                    const std::string& unitWhere);
    /// The element or ion that takes up the charge imbalance once the pH is measured.
    void balanceWith(const std::string& name, const std::string& where);
    /// A dissolved gas, mol/kgw.
    void gas(const std::string& name, double value, const std::string& where);

    /// The analysis, once every required field is there.
    Analysis build() const;

    /// Refuses a value that is not a finite number.
    void requireFinite(double value, const std::string& text, const std::string& where) const;
    [[noreturn]] void fail(const std::string& where, const std::string& problem) const;

private:
    struct Entry {
        std::string element;
        std::string firstName;  // as the file wrote it, for messages
        double plain = 0.0;     // given as the element or a non-carbonate ion, in the file's unit
        double carbonate = 0.0; // given as CO3--, in the file's unit
        int charge = 0;         // |charge| of the plain part's ion
        bool hasPlain = false;
        bool hasCarbonate = false;
    };

    /// Library-unit amounts of each entry, with a note for a lab unit the library lacks.
    void convertAmounts(Analysis& a) const;
    void requireConstraintsComplete(const Analysis& a) const;
    Entry& entryFor(const ComponentNames::Element& e, const std::string& name,
                    const std::string& where);

    const ComponentNames& names_;
    std::string source_;
    Analysis analysis_;
    bool haveTemperature_ = false;
    bool havePressure_ = false;
    bool haveUnit_ = false;
    std::string unitName_;  // as the file wrote it
    UnitNames::Amount amount_;
    std::string balanceWhere_;
    std::vector<Entry> entries_;
};

}  // namespace korvane::Brinecast::cli
