#include "brinecast/readers/ConditionText.h"

#include "brinecast/readers/InputError.h"
#include "brinecast/readers/UnitNames.h"
#include "brinecast/readers/Utf8Text.h"

#include <cmath>
#include <cstdlib>
#include <optional>

namespace korvane::Brinecast::cli {
namespace {

std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string::npos) return "";
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

/// The number at the start of `text` and the unit after it.
bool split(const std::string& text, double& value, std::string& unit) {
    const std::string t = trimmed(text);
    char* end = nullptr;
    value = std::strtod(t.c_str(), &end);
    if (end == t.c_str() || !std::isfinite(value)) return false;
    unit = trimmed(std::string(end));
    return true;
}

[[noreturn]] void refuse(const std::string& option, const std::string& text, const std::string& why) {
    throw InputError(option + ": \"" + Utf8Text::oneLine(text) + "\" " + why);
}

}  // namespace

double ConditionText::temperature(const std::string& text, const std::string& option) {
    double value = 0.0;
    std::string unit;
    if (!split(text, value, unit))
        refuse(option, text, "is not a temperature; give a number and a unit, e.g. \"120 \xC2\xB0" "C\" or 393.15K");
    const std::optional<double> kelvin = UnitNames::toKelvin(value, unit);
    if (!kelvin)
        refuse(option, text, "has the unit \"" + Utf8Text::oneLine(unit) + "\", which is no temperature unit; use " +
                                 UnitNames::temperatureAccepted());
    return *kelvin;
}

double ConditionText::pressure(const std::string& text, const std::string& option) {
    double value = 0.0;
    std::string unit;
    if (!split(text, value, unit))
        refuse(option, text, "is not a pressure; give a number and a unit, e.g. \"300 bar\" or 30MPa");
    const std::optional<double> pascal = UnitNames::toPascal(value, unit);
    if (!pascal)
        refuse(option, text, "has the unit \"" + Utf8Text::oneLine(unit) + "\", which is no pressure unit; use " +
                                 UnitNames::pressureAccepted());
    return *pascal;
}

ConditionText::Conditions ConditionText::both(const std::string& text, const std::string& option) {
    const std::size_t comma = text.find(',');
    if (comma == std::string::npos)
        refuse(option, text, "needs a temperature and a pressure separated by a comma, e.g. \"120 \xC2\xB0" "C,300 bar\"");
    return {temperature(text.substr(0, comma), option), pressure(text.substr(comma + 1), option)};
}

}  // namespace korvane::Brinecast::cli
