#pragma once

#include <cstddef>

namespace korvane::Brinecast::cli {

/// How much an analysis file may hold. A field or lab batch is far inside these; beyond them a
/// file is almost surely not an analysis (a log, a binary, a runaway export), and reading it
/// would only cost memory. Each message that applies one names it and says to split the file.
struct ReadLimits {
    /// An analysis file, JSON or CSV, bytes (64 MiB: about 300 000 rows of 40 columns).
    static constexpr std::size_t kMaxFileBytes = 64u << 20;
    /// Analyses in one file: JSON array entries or CSV data rows.
    static constexpr std::size_t kMaxAnalyses = 100000;
    /// One CSV row, bytes, quoted line breaks included.
    static constexpr std::size_t kMaxCsvRowBytes = 64u << 10;
    /// Nesting of JSON arrays and objects; an array of analyses with their temperature objects
    /// needs 3.
    static constexpr std::size_t kMaxJsonDepth = 16;
};

}  // namespace korvane::Brinecast::cli
