#pragma once

#include <string>

namespace korvane::Brinecast::cli {

/// Temperatures and pressures typed on the command line with their units ("120 °C", "300bar",
/// "120C,300bar"), in the units an analysis file accepts. Errors throw InputError naming the
/// option, the text and what would be accepted.
class ConditionText {
public:
    /// K from "VALUE UNIT".
    static double temperature(const std::string& text, const std::string& option);
    /// Pa from "VALUE UNIT".
    static double pressure(const std::string& text, const std::string& option);

    struct Conditions {
        double temperatureK;
        double pressurePa;
    };
    /// K and Pa from "TEMPERATURE,PRESSURE", each with its unit.
    static Conditions both(const std::string& text, const std::string& option);
};

}  // namespace korvane::Brinecast::cli
