#include "brinecast/commands/Commands.h"

#include "brinecast/readers/AnalysisCsvReader.h"
#include "brinecast/readers/AnalysisJsonReader.h"
#include "brinecast/reports/BalanceReport.h"
#include "brinecast/commands/BatchRunner.h"
#include "brinecast/calculation/Calculator.h"
#include "brinecast/reports/CsvReport.h"
#include "brinecast/readers/InputError.h"
#include "brinecast/reports/JsonReport.h"
#include "brinecast/reports/ProgressBar.h"
#include "brinecast/commands/StreamingBatch.h"
#include "brinecast/reports/NumberText.h"
#include "brinecast/readers/ReadLimits.h"
#include "brinecast/reports/TableReport.h"
#include "brinecast/reports/TextTable.h"
#include "brinecast/readers/UnitNames.h"
#include "brinecast/readers/Utf8Text.h"

#include <sys/stat.h>

#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <fstream>

namespace korvane::Brinecast::cli {
namespace {

using Status = AnalysisResult::Status;

AnalysisResult invalid(const std::string& source, const std::string& message) {
    AnalysisResult r;
    r.analysis.source = source;
    r.status = Status::Invalid;
    r.error = message;
    return r;
}

bool endsWith(const std::string& s, const std::string& suffix) {
    if (s.size() < suffix.size()) return false;
    for (std::size_t i = 0; i < suffix.size(); ++i) {
        if (std::tolower(static_cast<unsigned char>(s[s.size() - suffix.size() + i])) != suffix[i]) {
            return false;
        }
    }
    return true;
}

void report(std::ostream& err, const std::vector<AnalysisResult>& results) {
    for (const AnalysisResult& r : results) {
        if (r.status == Status::Invalid) {
            err << "brinecast: " << Utf8Text::oneLine(r.error) << '\n';
        } else if (!r.calculated() || r.status == Status::NotClosed) {
            err << "brinecast: " << Utf8Text::oneLine(r.analysis.source) << ": calculation failed: "
                << Utf8Text::oneLine(r.error) << '\n';
        }
    }
}

std::string tooLarge(const std::string& file) {
    return file + ": the file is larger than the " + std::to_string(ReadLimits::kMaxFileBytes) +
           " bytes (64 MiB) an analysis file may hold; split it into smaller files";
}

/// Why `file` is not an analysis file that can be read whole, or empty when it is one.
std::string unreadable(const std::string& file) {
    struct stat info {};
    if (stat(file.c_str(), &info) != 0) {
        return file + ": cannot be read (" + std::strerror(errno) + "); check the file name";
    }
    if (S_ISDIR(info.st_mode)) {
        return file + ": is a directory; give the analysis files in it (.json or .csv)";
    }
    if (S_ISREG(info.st_mode) && static_cast<std::size_t>(info.st_size) > ReadLimits::kMaxFileBytes) {
        return tooLarge(file);
    }
    return "";
}

}  // namespace

std::vector<AnalysisResult> Commands::load(const std::vector<std::string>& files) const {
    std::vector<AnalysisResult> results;
    for (const std::string& file : files) {
        const std::string why = unreadable(file);
        if (!why.empty()) {
            results.push_back(invalid(file, why));
            continue;
        }
        std::ifstream in(file, std::ios::binary);
        if (!in) {
            results.push_back(invalid(file, file + ": cannot be read (" + std::strerror(errno) +
                                                "); check the file name"));
            continue;
        }
        // Read no more than the limit: a pipe or a device has no size to check beforehand.
        std::string text;
        char chunk[1 << 16];
        while (text.size() <= ReadLimits::kMaxFileBytes && in.read(chunk, sizeof chunk).gcount() > 0) {
            text.append(chunk, static_cast<std::size_t>(in.gcount()));
        }
        if (text.size() > ReadLimits::kMaxFileBytes) {
            results.push_back(invalid(file, tooLarge(file)));
            continue;
        }
        try {
            if (endsWith(file, ".csv")) {
                for (AnalysisCsvReader::Row& row : AnalysisCsvReader(names_).read(text, file)) {
                    if (row.analysis) {
                        AnalysisResult r;
                        r.analysis = std::move(*row.analysis);
                        results.push_back(std::move(r));
                    } else {
                        results.push_back(invalid(file + ":" + std::to_string(row.line), row.error));
                        results.back().analysis.name = row.name;
                    }
                }
            } else {
                for (Analysis& a : AnalysisJsonReader(names_).read(text, file)) {
                    AnalysisResult r;
                    r.analysis = std::move(a);
                    results.push_back(std::move(r));
                }
            }
        } catch (const InputError& e) {
            results.push_back(invalid(file, e.what()));
        }
    }
    return results;
}

int Commands::status(const std::vector<AnalysisResult>& results) {
    int worst = kOk;
    for (const AnalysisResult& r : results) {
        if (r.status == Status::Invalid) return kBadInput;
        if (r.status != Status::Ok) worst = kCalculationFailed;
    }
    return worst;
}

std::optional<std::string> Commands::balancingElement(const std::string& ion) const {
    const std::optional<ComponentNames::Element> e = names_.element(ion);
    if (!e || e->carbonate) {
        err_ << "brinecast: \"" << ion << "\" is not an element or ion to balance with; use "
             << names_.acceptedElements() << " (but not CO3--)\n";
        return std::nullopt;
    }
    return e->name;
}

std::vector<AnalysisResult> Commands::calculate(const std::vector<std::string>& files,
                                                const Options& options, int& status) const {
    std::optional<std::string> element;
    if (options.balanceWith) {
        element = balancingElement(*options.balanceWith);
        if (!element) {
            status = kBadInput;
            return {};
        }
    }
    const Calculator calculator(options.engineDirectory, element, options.method, options.activity, options.macInnes);
    std::vector<AnalysisResult> results = load(files);
    // Load the engine once here, before the workers start. Without an engine, each per-litre
    // analysis would try the three file names again under the bridge's load lock, so the workers
    // would only queue on it: they go one at a time instead.
    const bool engineReady = !Calculator::needsEngine(results) || calculator.loadEngine();
    ProgressBar bar(err_, options.progress, results.size());
    BatchRunner::run(
        results.size(), engineReady ? options.threads : 1,
        [&](std::size_t i) { calculator.calculate(results[i]); },
        [&](std::size_t done) { bar.show(done); });
    bar.finish();
    status = Commands::status(results);
    return results;
}

int Commands::speciate(const std::vector<std::string>& files, const Options& options) {
    int code = kOk;
    const std::vector<AnalysisResult> results = calculate(files, options, code);
    if (results.empty()) return code;
    if (options.format == "json") {
        JsonReport::writeSpeciation(out_, results, names_);
    } else if (options.format == "csv") {
        CsvReport::write(out_, results, true);
    } else {
        TableReport::writeSpeciation(out_, results, names_);
    }
    report(err_, results);
    return code;
}

int Commands::ph(const std::vector<std::string>& files, const Options& options) {
    int code = kOk;
    const std::vector<AnalysisResult> results = calculate(files, options, code);
    if (results.empty()) return code;
    if (options.format == "json") {
        JsonReport::writePH(out_, results);
    } else if (options.format == "csv") {
        CsvReport::write(out_, results, false);
    } else {
        TableReport::writePH(out_, results);
    }
    report(err_, results);
    return code;
}

int Commands::batch(const std::string& input, const std::string& output, const Options& options) {
    std::ofstream file;
    if (output != "-") {
        file.open(output, std::ios::binary);
        if (!file) {
            err_ << "brinecast: " << output << ": cannot be written (" << std::strerror(errno)
                 << "); check the directory and permissions\n";
            return kBadInput;
        }
    }
    std::ostream& out = output == "-" ? out_ : file;
    StreamingBatch::Counts counts;
    int code = kOk;
    if (streamBatch(input, out, options, counts, code)) {
        if (counts.rows() == 0) return code;  // nothing calculated: an option was refused
    } else {
        const std::vector<AnalysisResult> results = calculate({input}, options, code);
        if (results.empty()) return code;
        CsvReport::write(out, results, true);
        // Row messages are in the result file; a problem with the file as a whole is said here.
        for (const AnalysisResult& r : results) {
            if (r.status == Status::Invalid && r.analysis.source == input) err_ << "brinecast: " << Utf8Text::oneLine(r.error) << '\n';
            (r.status == Status::Ok ? counts.ok : r.status == Status::Invalid ? counts.invalid : counts.failed) += 1;
        }
    }
    err_ << "brinecast: " << counts.rows() << " analyses: " << counts.ok << " ok, " << counts.failed
         << " failed, " << counts.invalid << " with invalid input"
         << (output == "-" ? "" : "; results in " + output) << '\n';
    return code;
}

bool Commands::streamBatch(const std::string& input, std::ostream& out, const Options& options,
                           StreamingBatch::Counts& counts, int& status) const {
    if (!endsWith(input, ".csv")) return false;  // a JSON document is read whole anyway
    std::optional<std::string> element;
    if (options.balanceWith) {
        element = balancingElement(*options.balanceWith);
        if (!element) {
            status = kBadInput;
            return true;
        }
    }
    const Calculator calculator(options.engineDirectory, element, options.method, options.activity, options.macInnes);
    const StreamingBatch batch(names_, calculator, element);
    const std::optional<StreamingBatch::Plan> plan = batch.plan(input, options.threads);
    if (!plan) return false;  // the file as a whole is reported as for any other command
    ProgressBar bar(err_, options.progress, plan->rows);
    try {
        counts = batch.run(input, *plan, out, options.threads, [&](std::size_t done) { bar.show(done); });
    } catch (const InputError& e) {
        // Only a file changed between the two readings gets here: the rows written stay.
        bar.finish();
        err_ << "brinecast: " << e.what() << " (the file changed while the batch ran)\n";
        status = kBadInput;
        return true;
    }
    bar.finish();
    status = counts.invalid > 0 ? kBadInput : counts.failed > 0 ? kCalculationFailed : kOk;
    return true;
}

int Commands::balance(const std::string& file, const std::string& ion, const Options& options) {
    const std::optional<std::string> element = balancingElement(ion);
    if (!element) return kBadInput;
    std::vector<AnalysisResult> loaded = load({file});
    std::vector<BalanceReport::Entry> entries;
    for (AnalysisResult& r : loaded) {
        if (r.status == Status::Invalid) continue;
        const ChargeBalance charge = ChargeBalance::of(r.analysis);
        const double amount = charge.amountToCancel(*element);
        entries.push_back({r.analysis, charge, amount, ChargeBalance::cannotCancel(r.analysis, *element, amount)});
        // The ion asked for cannot do it: the user's choice is what has to change.
        if (!entries.back().cannotCancel.empty()) {
            r.status = Status::Invalid;
            r.error = entries.back().cannotCancel;
        }
    }
    if (options.format == "json") {
        BalanceReport::writeJson(out_, entries, *element);
    } else {
        BalanceReport::writeTable(out_, entries, *element, ion, file);
    }
    report(err_, loaded);
    return status(loaded);
}

int Commands::elements() {
    const ElementTable& t = names_.table();
    TextTable elements({"Element", "Reported as", "Molar mass in mg units (g/mol)",
                        "Lab names accepted"},
                       {false, false, true, false});
    for (const ElementTable::Element& e : t.elements()) {
        if (!names_.element(e.name)) continue;  // water's own H and O
        std::string lab = e.ionName;
        for (const ElementTable::NamePair& spread : t.spreadChargeNames()) {
            const auto named = names_.element(spread.first);
            if (named && named->name == e.name && spread.first != e.ionName) {
                lab = spread.first + ", " + lab;
            }
        }
        if (e.name == "C") lab += ", CO3-- (carbonate, converted)";
        elements.add({e.name, e.ionName, NumberText::exact(e.ionMolarMass), lab});
    }
    out_ << "Elements, in the units of the analysis:\n";
    elements.write(out_, "  ");
    out_ << "\n  In mg/L and mg/kg an amount of C is counted as bicarbonate (HCO3-, "
         << NumberText::exact(t.molarMass("C")) << " g/mol)\n  and one of S(6) as sulfate (SO4-2, "
         << NumberText::exact(t.molarMass("S(6)")) << " g/mol): report them as HCO3- and SO4-- "
            "masses.\n  Carbonate reported as CO3-- is converted to the same amount of carbon.\n\n";
    TextTable gases({"Gas", "Counted in element"}, {false, false});
    for (const ElementTable::NamePair& g : t.gases()) gases.add({g.first, g.second});
    out_ << "Dissolved gases, always in mol/kgw:\n";
    gases.write(out_, "  ");
    return kOk;
}

}  // namespace korvane::Brinecast::cli
