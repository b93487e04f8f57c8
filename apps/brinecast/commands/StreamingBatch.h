#pragma once

#include "brinecast/readers/AnalysisCsvReader.h"
#include "brinecast/calculation/Calculator.h"
#include "brinecast/readers/CsvChunkReader.h"
#include "brinecast/readers/ComponentNames.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace korvane::Brinecast::cli {

/// `brinecast batch` on a CSV file of any length: rows are read a chunk at a time, calculated on
/// all threads and written in input order, so memory holds one chunk and the result file grows
/// while the batch runs. A row that cannot be read or calculated keeps its place.
///
/// The species columns must be known before the first row is written, so the file is read
/// twice: first to find the basis of every row (cheap: nothing is solved), then to calculate.
class StreamingBatch {
public:
    struct Counts {
        std::size_t ok = 0;
        std::size_t failed = 0;   ///< calculated but failed or not closed
        std::size_t invalid = 0;  ///< could not be read or used
        std::size_t rows() const { return ok + failed + invalid; }
    };

    /// `balanceWith`: the element each analysis is balanced with, if any, as the calculator does.
    StreamingBatch(const ComponentNames& names, const Calculator& calculator,
                   std::optional<std::string> balanceWith, std::size_t chunkRows = kDefaultChunkRows);

    /// What the first reading finds: the species columns and the number of rows.
    struct Plan {
        std::vector<std::string> species;
        std::size_t rows = 0;
    };

    /// The plan of `fileName`, or nothing when the file as a whole cannot be read as a batch
    /// (unreadable, bad header, no rows): the caller then reports it as for any other file.
    std::optional<Plan> plan(const std::string& fileName, unsigned threads = 0) const;

    /// Calculates every row of `fileName` on `threads` threads (0: one per core) and writes the
    /// result CSV to `out`, header first, chunk by chunk. `progress(done)` is called while the
    /// rows are calculated.
    Counts run(const std::string& fileName, const Plan& plan, std::ostream& out, unsigned threads,
               const std::function<void(std::size_t)>& progress) const;

    static constexpr std::size_t kDefaultChunkRows = 2048;

private:
    /// The next chunk's rows, read as one table per thread and parsed on `threads` threads;
    /// empty at the end of the file. Throws `InputError` for a problem with the file as a whole.
    std::vector<AnalysisCsvReader::Row> nextRows(CsvChunkReader& chunks, const std::string& fileName,
                                                 unsigned threads) const;
    /// Rows as results to calculate, unreadable rows marked invalid as `Commands::load` marks them.
    static std::vector<AnalysisResult> results(std::vector<AnalysisCsvReader::Row> rows, const std::string& fileName);

    const ComponentNames& names_;
    const Calculator& calculator_;
    std::optional<std::string> balanceWith_;
    std::size_t chunkRows_;
};

}  // namespace korvane::Brinecast::cli
