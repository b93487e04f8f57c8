#pragma once

#include "FrameColumns.h"

#include "brinecast/calculation/AnalysisResult.h"
#include "brinecast/readers/AnalysisBuilder.h"
#include "brinecast/readers/ComponentNames.h"

#include <korvane/Speciator.h>

#include <string>
#include <vector>

namespace korvane::Brinecast::python {

/// Reads a table of analyses with the command line's column names and units: one column per
/// element, lab ion or gas, `unit`, `temperature`, `pressure`, their unit columns, `density`
/// (g/cm3), `name`, `description`, and the measured `ph` and `alkalinity_eq_per_kgw` that
/// a row may impose on its speciation. A bad cell makes its row invalid with the command line's
/// message; a column no analysis can have refuses the whole table.
class FrameReader {
public:
    /// Throws `InputError` naming the first unknown or repeated column and what is accepted.
    FrameReader(const cli::ComponentNames& names, const FrameColumns& columns);

    /// Row `row` as an analysis, or a result marked invalid with the reason. Any thread.
    cli::AnalysisResult read(std::size_t row) const;

    /// The measured pH, alkalinity and closing ion of row `row` as `read` gave it, the
    /// alkalinity in eq/kgw through `solids`' water per litre; an empty cell imposes nothing.
    Constraints constraints(std::size_t row, const cli::AnalysisResult& read) const;

    /// The names of the columns that hold text rather than numbers.
    static const std::vector<std::string>& textColumns();

private:
    struct Amount {
        const std::string* name;
        std::string where;  ///< "column \"Na+\"", made once for the table rather than per cell
        const double* values;
        bool gas;
    };

    /// The row's measured pH, alkalinity and closing ion into `b`.
    void measured(cli::AnalysisBuilder& b, std::size_t row) const;
    const double* number(const char* name) const;
    const std::vector<std::string>* text(const char* name) const;

    const cli::ComponentNames& names_;
    const FrameColumns& columns_;
    std::vector<Amount> amounts_;
    const double* temperature_ = nullptr;
    const double* pressure_ = nullptr;
    const double* density_ = nullptr;
    const double* pH_ = nullptr;                 ///< "pH", or "ph" as older tables name it
    const double* alkalinity_ = nullptr;         ///< "alkalinity", in the row's alkalinity_unit
    const double* alkalinityEqPerKgw_ = nullptr; ///< "alkalinity_eq_per_kgw", already eq/kgw
    const std::vector<std::string>* alkalinityUnits_ = nullptr;
    const std::vector<std::string>* balanceWith_ = nullptr;
    const std::vector<std::string>* names_column_ = nullptr;
    const std::vector<std::string>* descriptions_ = nullptr;
    const std::vector<std::string>* units_ = nullptr;
    const std::vector<std::string>* temperatureUnits_ = nullptr;
    const std::vector<std::string>* pressureUnits_ = nullptr;
};

}  // namespace korvane::Brinecast::python
