#pragma once

#include <rapidjson/document.h>

#include <cstddef>

namespace korvane::Brinecast::cli {

/// Parses JSON into a RapidJSON document with every number converted by std::from_chars, which
/// rounds correctly: RapidJSON 1.1.0's own full-precision path reads a zero with an exponent
/// ("0e-30", "0.0e-300") as a tiny non-zero number, of either sign. Iterative (no recursion) and
/// UTF-8 checked. A number beyond the range of a double ends the parse with `numberTooBig`.
class ExactJsonParser {
public:
    struct Outcome {
        rapidjson::ParseErrorCode error = rapidjson::kParseErrorNone;
        std::size_t offset = 0;  ///< byte offset of the error
    };

    static Outcome parse(rapidjson::Document& document, const char* text, std::size_t length);
};

}  // namespace korvane::Brinecast::cli
