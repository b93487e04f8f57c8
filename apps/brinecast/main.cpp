// brinecast: the command line over the Brinecast library. Option parsing lives here; the
// commands themselves are in Commands.
#include "brinecast/Commands.h"
#include "brinecast/EngineLocator.h"

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
#include <string>

namespace cli = korvane::Brinecast::cli;

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
                   "Solver: auto (the specified solver, the robust one when it fails or its "
                   "balances do not close), robust, or specified (the library's run, as it is)")
        ->transform(CLI::CheckedTransformer(methods, CLI::ignore_case))
        ->default_str("auto");

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

    CLI::App* elements = app.add_subcommand(
        "elements", "List the element, lab ion and gas names the library knows, with molar masses");

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        // Usage errors share the bad-input status, whatever code CLI11 gives them.
        return app.exit(e) == 0 ? 0 : cli::Commands::kBadInput;
    }

    if (options.engineDirectory.empty()) {
        options.engineDirectory = cli::EngineLocator::defaultDirectory();
    }
    if (!balanceWith.empty()) options.balanceWith = balanceWith;
    options.progress = isatty(fileno(stderr)) != 0;

    cli::Commands commands(std::cout, std::cerr);
    try {
        if (*speciate) return commands.speciate(files, options);
        if (*ph) return commands.ph(files, options);
        if (*balance) return commands.balance(files.front(), ion, options);
        if (*batch) return commands.batch(files.front(), output, options);
        if (*elements) return commands.elements();
    } catch (const std::exception& e) {
        std::cerr << "brinecast: " << e.what() << '\n';
        return cli::Commands::kCalculationFailed;
    }
    return cli::Commands::kBadInput;
}
