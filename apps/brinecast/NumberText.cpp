#include "brinecast/NumberText.h"

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
    char buffer[64];
    const std::to_chars_result r = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, r.ptr);
}

std::string NumberText::significant(double value, int digits) {
    return printed("%.*g", digits, value);
}

std::string NumberText::fixed(double value, int decimals) {
    return printed("%.*f", decimals, value);
}

}  // namespace korvane::Brinecast::cli
