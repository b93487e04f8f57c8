// brinecast: the command line over the Brinecast library. Option parsing lives here; the
// commands themselves are in Commands.
#include "brinecast/commands/Commands.h"
#include "brinecast/commands/ScaleCommands.h"
#include "brinecast/readers/InputError.h"
#include "brinecast/calculation/EngineLocator.h"
#include "brinecast/reports/ResultText.h"
#include "brinecast/readers/Utf8Text.h"

#include <CLI/CLI.hpp>

#ifdef _WIN32
#include <io.h>
#define isatty _isatty
#define fileno _fileno
#else
#include <unistd.h>
#endif

#include <cstdio>
#include <exception>
#include <iostream>
#include <map>
#include <stdexcept>
#include <string>

namespace cli = korvane::Brinecast::cli;

namespace {

/// The first argument that is not an option or an option's value: what the user meant as the
/// command.
std::string commandWord(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg.empty() || arg[0] != '-') return arg;
        if (arg == "--engine-dir" || arg == "--method" || arg == "--activity" || arg == "--macinnes") ++i;  // their value follows
    }
    return "";
}

/// The value given to `option`, as "--option VALUE" or "--option=VALUE"; the last one counts.
std::string optionValue(int argc, char** argv, const std::string& option) {
    std::string value;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == option && i + 1 < argc) value = argv[i + 1];
        if (arg.rfind(option + "=", 0) == 0) value = arg.substr(option.size() + 1);
    }
    return value;
}

/// CLI11's own message, said the way the program's other messages are: with the cause and
/// what to type instead.
std::string usageMessage(const CLI::App& app, const CLI::ParseError& error, int argc, char** argv) {
    std::string commands;
    for (const CLI::App* c : app.get_subcommands({})) {
        commands += (commands.empty() ? "" : ", ") + c->get_name();
    }
    const std::string word = commandWord(argc, argv);
    bool known = false;
    for (const CLI::App* c : app.get_subcommands({})) known = known || c->get_name() == word;
    if (word.empty()) return "a command is required; the commands are " + commands +
                             " (brinecast --help tells what each does)";
    if (!known) return "unknown command '" + cli::Utf8Text::oneLine(word) + "'; the commands are " +
                       commands + " (brinecast --help tells what each does)";
    const std::string what = cli::Utf8Text::oneLine(error.what());
    // CLI11 words a failed choice as its internal mapping; say the choices instead.
    if (what.rfind("--method:", 0) == 0) {
        return "--method: '" + cli::Utf8Text::oneLine(optionValue(argc, argv, "--method")) +
               "' is not a solver; use auto, robust or specified";
    }
    return what + "; brinecast " + word + " --help lists its options";
}

/// The scale commands and what they read, filled in by CLI11 as it parses.
struct ScaleCommandLine {
    CLI::App* scale = nullptr;
    CLI::App* mix = nullptr;
    CLI::App* profile = nullptr;
    cli::ScaleCommands::MixRequest mixRequest;
    cli::ScaleCommands::ProfileRequest profileRequest;
};

void addScaleCommands(CLI::App& app, ScaleCommandLine& line, std::vector<std::string>& files, std::string& format,
                      std::string& balanceWith) {
    const auto common = [&](CLI::App* command) {
        command->add_option("--format", format, "Output format")
            ->check(CLI::IsMember({"table", "json", "csv", "html"}))
            ->capture_default_str();
        command->add_option("--balance-with", balanceWith,
                            "Cancel each analysis' charge imbalance with this element or ion "
                            "(for example Cl or Na+) before the calculation");
    };
    line.scale = app.add_subcommand(
        "scale", "Report each analysis' scale minerals: saturation index, log K, log IAP and the "
                 "amount that must deposit to reach saturation (mol/kgw and mg/L)");
    line.scale->add_option("FILE", files, "Analysis files (.json, or .csv with one per row)")->required();
    common(line.scale);

    cli::ScaleCommands::MixRequest& mix = line.mixRequest;
    line.mix = app.add_subcommand("mix", "Saturation index of every mineral along a mix of two waters, from all "
                                         "of the first to all of the second");
    line.mix->add_option("A", mix.first, "Analysis file of the first water")->required();
    line.mix->add_option("B", mix.second, "Analysis file of the second water")->required();
    line.mix->add_option("--steps", mix.steps, "Mixing points, both ends included")->capture_default_str();
    line.mix->add_option("--by", mix.by, "What the fractions measure: volume or mass of solution")
        ->check(CLI::IsMember({"volume", "mass"}))
        ->capture_default_str();
    line.mix->add_option("--temperature", mix.temperature,
                         "Temperature of the mix with its unit (\"60 \xC2\xB0" "C\"); default: the mean by mass");
    line.mix->add_option("--pressure", mix.pressure,
                         "Pressure of the mix with its unit (\"200 bar\"); default: the first water's");
    common(line.mix);

    cli::ScaleCommands::ProfileRequest& profile = line.profileRequest;
    line.profile = app.add_subcommand("profile", "Saturation index of every mineral along a temperature-pressure "
                                                 "path, e.g. from the reservoir to the separator");
    line.profile->add_option("FILE", profile.file, "Analysis file with one water")->required();
    line.profile
        ->add_option("--from", profile.from, "Start: \"TEMPERATURE,PRESSURE\" with units, e.g. \"120 \xC2\xB0" "C,300 "
                                             "bar\" or 120C,300bar")
        ->required();
    line.profile->add_option("--to", profile.to, "End, as --from")->required();
    line.profile->add_option("--steps", profile.steps, "Points, both ends included")->capture_default_str();
    common(line.profile);
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app{"Aqueous speciation and pH of oil- and gas-field produced water.\n"
                 "Analyses are JSON or CSV files; see README.md for their format.",
                 "brinecast"};
    app.require_subcommand(1);
    // "/data/brine.json" is a file, never a Windows-style "/option", on every platform.
    app.allow_windows_style_options(false);
    app.fallthrough();  // --engine-dir may come before or after the command

    cli::Commands::Options options;
    app.add_option("--engine-dir", options.engineDirectory,
                   "Directory of the engine library (kvpvt64.dll) that computes the density of "
                   "per-litre analyses; default: the reference engine built or installed with "
                   "this program")
        ->check(CLI::ExistingDirectory);
    const std::map<std::string, korvane::Brinecast::Method> methods{
        {"auto", korvane::Brinecast::Method::Auto},
        {"robust", korvane::Brinecast::Method::Robust},
        {"specified", korvane::Brinecast::Method::Specified}};
    app.add_option("--method", options.method,
                   "Solver: robust (the default), auto (the specified solver, the robust one "
                   "when it fails or its balances do not close), or specified (the library's "
                   "run, as it is)")
        ->transform(CLI::CheckedTransformer(methods, CLI::ignore_case))
        ->default_str("robust");
    std::string activity = "auto";
    app.add_option("--activity", activity,
                   "Activity model: auto (pitzer for each analysis its data cover, debye-huckel "
                   "for the others; the report says which and why), debye-huckel (each ion's own "
                   "size and salting coefficient, log K corrected for pressure; for brines like "
                   "seawater and beyond), pitzer (Harvie-Moller-Weare virial model on its own "
                   "species set; concentrated brines to halite saturation, without Zn, sulfide or "
                   "iron with carbonate), davies (charge alone; to about 0.5 mol/kgw), or ideal "
                   "(every activity coefficient 1, as the library's run)")
        ->check(CLI::IsMember({"auto", "ideal", "davies", "debye-huckel", "pitzer"}, CLI::ignore_case))
        ->capture_default_str();
    std::string macInnes = "on";
    app.add_option("--macinnes", macInnes,
                   "Pitzer only: single-ion activity coefficients, and so the pH, on the MacInnes "
                   "scale (on, the usual convention for brines) or unscaled (off); molalities and "
                   "saturation indices are the same either way")
        ->check(CLI::IsMember({"on", "off"}, CLI::ignore_case))
        ->capture_default_str();

    std::vector<std::string> files;
    std::string ion;
    std::string output;
    std::string balanceWith;
    const auto format = [](CLI::App* command, std::string& target,
                           const std::vector<std::string>& allowed) {
        command->add_option("--format", target, "Output format")
            ->check(CLI::IsMember(allowed))
            ->capture_default_str();
    };

    CLI::App* speciate = app.add_subcommand(
        "speciate", "Report the conditions, charge balance, pH and species of each analysis");
    speciate->add_option("FILE", files, "Analysis files (.json, or .csv with one per row)")
        ->required();
    format(speciate, options.format, {"table", "json", "csv"});
    speciate->add_option("--balance-with", balanceWith,
                         "Cancel each analysis' charge imbalance with this element or ion "
                         "(for example Cl or Na+) before the calculation");

    CLI::App* ph = app.add_subcommand("ph", "Print the pH of each analysis");
    ph->add_option("FILE", files, "Analysis files")->required();
    format(ph, options.format, {"table", "json", "csv"});

    CLI::App* balance = app.add_subcommand(
        "balance", "Report an analysis' charge imbalance and the amount of an ion that cancels it");
    balance->add_option("FILE", files, "Analysis file")->required()->expected(1);
    balance->add_option("--with", ion, "Element or ion that cancels the imbalance (Cl, Na+, ...)")
        ->required();
    format(balance, options.format, {"table", "json"});

    CLI::App* batch = app.add_subcommand(
        "batch", "Calculate a CSV file of analyses on all cores, one result row per input row");
    batch->add_option("IN", files, "CSV file with one analysis per row")->required()->expected(1);
    batch->add_option("-o,--output", output, "Result CSV file (- for standard output)")->required();
    batch->add_option("--threads", options.threads, "Worker threads (default: one per core)")
        ->check(CLI::Range(1u, 1024u));

    ScaleCommandLine scaleLine;
    addScaleCommands(app, scaleLine, files, options.format, balanceWith);
    CLI::App* elements = app.add_subcommand(
        "elements", "List the element, lab ion and gas names the library knows, with molar masses");

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        if (e.get_exit_code() == 0) return app.exit(e);  // --help
        // Usage errors share the bad-input status, whatever code CLI11 gives them.
        std::cerr << "brinecast: " << usageMessage(app, e, argc, argv) << '\n';
        return cli::Commands::kBadInput;
    }

    options.activity = cli::ActivityChoice::named(activity);
    options.macInnes = macInnes == "on";  // IsMember gave it back in the listed case
    if (options.method == korvane::Brinecast::Method::Specified &&
        (options.activity.automatic() || options.activity.model() != korvane::Brinecast::ActivityModel::Ideal)) {
        std::cerr << "brinecast: --method specified solves with ideal activities only, and the "
                     "activity model is " << options.activity.word()
                  << ": give --activity ideal with it, or leave --method at robust.\n";
        return cli::Commands::kBadInput;
    }
    if (options.engineDirectory.empty()) {
        options.engineDirectory = cli::EngineLocator::defaultDirectory();
    }
    if (!balanceWith.empty()) options.balanceWith = balanceWith;
    options.progress = isatty(fileno(stderr)) != 0;

    cli::Commands commands(std::cout, std::cerr);
    cli::ScaleCommands scaleCommands(std::cout, std::cerr);
    try {
        if (*scaleLine.scale) return scaleCommands.scale(files, options);
        if (*scaleLine.mix) return scaleCommands.mix(scaleLine.mixRequest, options);
        if (*scaleLine.profile) return scaleCommands.profile(scaleLine.profileRequest, options);
        if (*speciate) return commands.speciate(files, options);
        if (*ph) return commands.ph(files, options);
        if (*balance) return commands.balance(files.front(), ion, options);
        if (*batch) return commands.batch(files.front(), output, options);
        if (*elements) return commands.elements();
    } catch (const cli::InputError& e) {
        std::cerr << "brinecast: " << cli::Utf8Text::oneLine(e.what()) << '\n';
        return cli::Commands::kBadInput;
    } catch (const std::invalid_argument& e) {
        // The library refuses input outside its data's range this way.
        std::cerr << "brinecast: " << cli::Utf8Text::oneLine(e.what()) << '\n';
        return cli::Commands::kBadInput;
    } catch (const std::exception& e) {
        std::cerr << "brinecast: " << cli::Utf8Text::oneLine(e.what()) << '\n';
        return cli::Commands::kCalculationFailed;
    }
    return cli::Commands::kBadInput;
}
