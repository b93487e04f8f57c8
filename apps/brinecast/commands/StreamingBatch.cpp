#include "brinecast/commands/StreamingBatch.h"

#include "brinecast/commands/BatchRunner.h"
#include "brinecast/reports/CsvReport.h"
#include "brinecast/readers/InputError.h"
#include "brinecast/calculation/LibraryBasis.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>
#include <thread>
#include <unordered_set>
#include <utility>

namespace korvane::Brinecast::cli {
namespace {

using Status = AnalysisResult::Status;

/// The ion that closes a row's balance: its own, else the command line's.
std::optional<std::string> closing(const Analysis& a, const std::optional<std::string>& balanceWith) {
    return a.balanceWith.empty() ? balanceWith : std::optional<std::string>(a.balanceWith);
}

/// The component names of an analysis, in order: all that decides its basis species.
std::string basisKey(const Analysis& a, const std::optional<std::string>& commandLine) {
    const std::optional<std::string> balanceWith = closing(a, commandLine);
    std::string key;
    for (const NameValue& e : a.elements) key += e.name + '\x1f';
    if (balanceWith) key += *balanceWith;
    if (a.alkalinityMeqPerL) key += "\x1d";  // its carbon joins the basis
    key += '\x1e';
    for (const NameValue& g : a.gases) key += g.name + '\x1f';
    return key;
}

/// The same components in mol/kgw: the basis does not depend on the amounts or the unit, and
/// no density is needed to find it.
Input basisInput(const Analysis& a, const std::optional<std::string>& commandLine) {
    const std::optional<std::string> balanceWith = closing(a, commandLine);
    Input in;
    in.dllPath = "no engine needed";
    in.temperature = a.temperatureK;
    in.elements.assign(a.elements, MolPerKgw);
    if (balanceWith && std::none_of(a.elements.begin(), a.elements.end(),
                                    [&](const NameValue& e) { return e.name == *balanceWith; })) {
        in.elements.push_back({*balanceWith, 1.0});
    }
    // A measured alkalinity brings carbon to an analysis that lists none.
    const auto carbon = [](const NameValue& e) { return e.name == "C"; };
    if (a.alkalinityMeqPerL && std::none_of(a.elements.begin(), a.elements.end(), carbon)) {
        in.elements.push_back({"C", 1.0});
    }
    in.gases.assign(a.gases, MolPerKgw);
    return in;
}

}  // namespace

StreamingBatch::StreamingBatch(const ComponentNames& names, const Calculator& calculator,
                               std::optional<std::string> balanceWith, std::size_t chunkRows)
    : names_(names), calculator_(calculator), balanceWith_(std::move(balanceWith)),
      chunkRows_(std::max<std::size_t>(chunkRows, 1)) {}

std::vector<AnalysisCsvReader::Row> StreamingBatch::nextRows(CsvChunkReader& chunks, const std::string& fileName,
                                                             unsigned threads) const {
    if (threads == 0) threads = std::max(1u, std::thread::hardware_concurrency());
    // One table per thread: each repeats the header and the blank lines before its rows, so
    // that reading cost grows with the tables, and a few per chunk keep it small.
    std::vector<std::string> tables;
    for (unsigned t = 0; t < threads; ++t) {
        std::string table = chunks.next((chunkRows_ + threads - 1) / threads);
        if (table.empty()) break;
        tables.push_back(std::move(table));
    }
    std::vector<std::vector<AnalysisCsvReader::Row>> parsed(tables.size());
    BatchRunner::run(
        tables.size(), threads,
        [&](std::size_t t) { parsed[t] = AnalysisCsvReader(names_).read(tables[t], fileName); },
        [](std::size_t) {});
    std::vector<AnalysisCsvReader::Row> rows;
    for (std::vector<AnalysisCsvReader::Row>& part : parsed) {
        rows.insert(rows.end(), std::make_move_iterator(part.begin()), std::make_move_iterator(part.end()));
    }
    return rows;
}

std::vector<AnalysisResult> StreamingBatch::results(std::vector<AnalysisCsvReader::Row> rows,
                                                    const std::string& fileName) {
    std::vector<AnalysisResult> results;
    results.reserve(rows.size());
    for (AnalysisCsvReader::Row& row : rows) {
        AnalysisResult r;
        if (row.analysis) {
            r.analysis = std::move(*row.analysis);
        } else {
            r.analysis.source = fileName + ":" + std::to_string(row.line);
            r.analysis.name = row.name;
            r.status = Status::Invalid;
            r.error = row.error;
        }
        results.push_back(std::move(r));
    }
    return results;
}

std::optional<StreamingBatch::Plan> StreamingBatch::plan(const std::string& fileName, unsigned threads) const {
    std::ifstream in(fileName, std::ios::binary);
    if (!in) return std::nullopt;
    CsvChunkReader chunks(in);
    Plan plan;
    std::vector<std::string>& columns = plan.species;
    std::unordered_set<std::string> named, seenBases;
    try {
        for (auto rows = nextRows(chunks, fileName, threads); !rows.empty(); rows = nextRows(chunks, fileName, threads)) {
            for (const AnalysisCsvReader::Row& row : rows) {
                if (!row.analysis || !seenBases.insert(basisKey(*row.analysis, balanceWith_)).second) continue;
                try {
                    const Input basis = basisInput(*row.analysis, balanceWith_);
                    const ActivityModel model = calculator_.activityChoice().decide(basis).model;
                    for (std::string& species : LibraryBasis::reportedSpecies(basis, model)) {
                        if (named.insert(species).second) columns.push_back(std::move(species));
                    }
                } catch (const std::exception&) {
                    // The library refuses this basis: the row fails when calculated, with no species.
                }
            }
        }
    } catch (const InputError&) {
        return std::nullopt;
    }
    plan.rows = chunks.rowsRead();
    if (plan.rows == 0) return std::nullopt;
    return plan;
}

StreamingBatch::Counts StreamingBatch::run(const std::string& fileName, const Plan& plan, std::ostream& out,
                                           unsigned threads, const std::function<void(std::size_t)>& progress) const {
    const std::vector<std::string>& species = plan.species;
    std::ifstream in(fileName, std::ios::binary);
    CsvChunkReader chunks(in);
    Counts counts;
    CsvReport::writeHeader(out, species, true);
    for (auto read = nextRows(chunks, fileName, threads); !read.empty(); read = nextRows(chunks, fileName, threads)) {
        std::vector<AnalysisResult> rows = results(std::move(read), fileName);
        // The engine is loaded here, once, before the workers start. Without an engine, each
        // per-litre analysis would retry the load under the bridge's lock, so they go one at a time.
        const bool engineReady = !Calculator::needsEngine(rows) || calculator_.loadEngine();
        std::vector<std::string> lines(rows.size());
        const std::size_t before = counts.rows();
        BatchRunner::run(
            rows.size(), engineReady ? threads : 1,
            [&](std::size_t i) {
                calculator_.calculate(rows[i]);
                std::ostringstream line;
                CsvReport::writeRow(line, rows[i], species, true);
                lines[i] = line.str();
            },
            [&](std::size_t done) { progress(before + done); });
        for (std::size_t i = 0; i < rows.size(); ++i) {
            out << lines[i];
            const Status status = rows[i].status;
            (status == Status::Ok ? counts.ok : status == Status::Invalid ? counts.invalid : counts.failed) += 1;
        }
        out.flush();
    }
    return counts;
}

}  // namespace korvane::Brinecast::cli
