#include "brinecast/reports/NumberText.h"

#include <cmath>
#include <cstdio>
#include <charconv>

namespace korvane::Brinecast::cli {
namespace {

std::string printed(const char* format, int precision, double value) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, format, precision, value);
    return buffer;
}

}  // namespace

std::string NumberText::exact(double value) {
    if (std::isnan(value)) return "nan";
    if (std::isinf(value)) return value > 0 ? "inf" : "-inf";
    // Plain digits where a reader expects them (101325, not 1.01325e+05), exponents for the
    // very small and very large.
    const double magnitude = std::abs(value);
    const bool plain = magnitude == 0.0 || (magnitude >= 1e-5 && magnitude < 1e16);
    char buffer[64];
    const std::to_chars_result r =
        std::to_chars(buffer, buffer + sizeof buffer, value,
                      plain ? std::chars_format::fixed : std::chars_format::scientific);
    return std::string(buffer, r.ptr);
}

std::string NumberText::significant(double value, int digits) {
    return printed("%.*g", digits, value);
}

std::string NumberText::fixed(double value, int decimals) {
    const std::string text = printed("%.*f", decimals, value);
    // A small negative number rounds to "-0.00"; it reads better as the zero it shows.
    if (text[0] == '-' && text.find_first_of("123456789") == std::string::npos) return text.substr(1);
    return text;
}

}  // namespace korvane::Brinecast::cli
