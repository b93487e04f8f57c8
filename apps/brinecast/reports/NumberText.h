#pragma once

#include <string>

namespace korvane::Brinecast::cli {

/// Numbers as the program writes them: in messages and CSV as the shortest text that reads
/// back to the same double, in tables with a fixed number of significant digits.
class NumberText {
public:
    /// Shortest round-trip text, in plain digits from 1e-5 to 1e16 ("0.1", "101325"), with an
    /// exponent outside ("1e-07"); "nan", "inf" and "-inf" for the others.
    static std::string exact(double value);
    /// `digits` significant digits, general notation ("7.123", "1.25e-05").
    static std::string significant(double value, int digits);
    /// `decimals` digits after the point ("0.03"), never a negative zero ("-0.00").
    static std::string fixed(double value, int decimals);
};

}  // namespace korvane::Brinecast::cli
