#pragma once

#include "brinecast/calculation/ActivityChoice.h"
#include "brinecast/calculation/AnalysisResult.h"
#include "brinecast/readers/ComponentNames.h"
#include "brinecast/commands/StreamingBatch.h"

#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace korvane::Brinecast::cli {

/// The program's commands. Each writes its report to `out` and its messages to `err`, and
/// returns the exit status: 0 when every analysis was calculated and checks out, 1 when a
/// calculation failed or did not close, 2 when some input could not be read or used.
class Commands {
public:
    static constexpr int kOk = 0;
    static constexpr int kCalculationFailed = 1;
    static constexpr int kBadInput = 2;

    struct Options {
        std::string format = "table";  ///< table, json or csv
        std::string engineDirectory;
        std::optional<std::string> balanceWith;  ///< element or ion name as the user gave it
        unsigned threads = 0;                    ///< 0: one per core
        Method method = Method::Robust;          ///< the library's solver
        ActivityChoice activity;                 ///< the library's activity model; auto by default
        bool macInnes = true;                    ///< Pitzer's single-ion convention
        bool progress = false;                   ///< draw a progress bar on `err`
    };

    explicit Commands(std::ostream& out, std::ostream& err) : out_(out), err_(err) {}

    int speciate(const std::vector<std::string>& files, const Options& options);
    int ph(const std::vector<std::string>& files, const Options& options);
    int balance(const std::string& file, const std::string& ion, const Options& options);
    int batch(const std::string& input, const std::string& output, const Options& options);
    int elements();

    /// Every analysis in the files, in order; a file or row that cannot be read becomes one
    /// result with status `Invalid`.
    std::vector<AnalysisResult> load(const std::vector<std::string>& files) const;
    /// The exit status for a set of results.
    static int status(const std::vector<AnalysisResult>& results);

    /// The library element an ion option names; writes the message and returns nothing when
    /// it names none.
    std::optional<std::string> balancingElement(const std::string& ion) const;

private:
    /// `batch` on a CSV file, chunk by chunk; false when the file is not one to stream (not CSV,
    /// or unreadable as a whole), which the whole-file path then reports.
    bool streamBatch(const std::string& input, std::ostream& out, const Options& options,
                     StreamingBatch::Counts& counts, int& status) const;
    std::vector<AnalysisResult> calculate(const std::vector<std::string>& files,
                                          const Options& options, int& status) const;

    std::ostream& out_;
    std::ostream& err_;
    ComponentNames names_;
};

}  // namespace korvane::Brinecast::cli
