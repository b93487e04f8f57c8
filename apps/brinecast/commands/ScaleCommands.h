#pragma once

#include "brinecast/calculation/Calculator.h"
#include "brinecast/calculation/ScaleAnalysis.h"
#include "brinecast/calculation/ScaleSweep.h"
#include "brinecast/commands/Commands.h"

#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace korvane::Brinecast::cli {


/// The scale commands: saturation and precipitation potential of analyses, saturation along a
/// mix of two waters and along a temperature-pressure path. Exit statuses as `Commands`.
class ScaleCommands {
public:
    struct MixRequest {
        std::string first, second;  ///< analysis files, one analysis each
        long long steps = 11;       ///< points from all first water to all second, both included
        std::string by = "volume";  ///< volume or mass
        std::string temperature;    ///< of the mix, with its unit; empty: mass-weighted mean
        std::string pressure;       ///< of the mix, with its unit; empty: the first water's
    };
    struct ProfileRequest {
        std::string file;
        std::string from, to;  ///< "TEMPERATURE,PRESSURE", each with its unit
        long long steps = 11;
    };

    ScaleCommands(std::ostream& out, std::ostream& err) : out_(out), err_(err) {}

    int scale(const std::vector<std::string>& files, const Commands::Options& options);
    int mix(const MixRequest& request, const Commands::Options& options);
    int profile(const ProfileRequest& request, const Commands::Options& options);

private:
    /// The library input of the only analysis of `file`; nothing, with the message written, when
    /// the file holds none, more than one, or one that cannot be prepared.
    std::optional<Input> single(const std::string& file, const Calculator& calculator, std::string& name,
                                int& status) const;
    /// One analysis' scale report; `status` raised on failure.
    ScaleAnalysis analyse(AnalysisResult& r, const Calculator& calculator, int& status) const;
    /// The sweep written in `format`; 1 when a point did not converge, else 0.
    int write(const ScaleSweep& sweep, const std::string& format) const;
    bool stepsAccepted(long long steps) const;
    /// The calculator of the options, with the balancing element they name; nothing, with the
    /// message written, when --balance-with names no element.
    std::optional<Calculator> calculatorFor(const Commands::Options& options) const;

    std::ostream& out_;
    std::ostream& err_;
};

}  // namespace korvane::Brinecast::cli
