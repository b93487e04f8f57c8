#pragma once

#include "database/ReactionRecord.h"
#include "tools/ValueArray.h"

#include <vector>

namespace korvane {
namespace Brinecast {

/// log10 K of the reaction as written, at `temperatureK` (K): the analytical expression when the
/// record has coefficients, van 't Hoff from log K and delta H at 298.15 K otherwise.
double logKAt(const ReactionRecord& record, double temperatureK);

/// log10 K of each record per formula unit of its named species, in record order. Every record's
/// name must be one of its own species.
korvane::ValueArray logKValues(double temperatureK, const std::vector<ReactionRecord>& records);

}  // namespace Brinecast
}  // namespace korvane
