#include "brinecast/readers/ExactJsonParser.h"

#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <charconv>
#include <cstdint>
#include <limits>
#include <system_error>

namespace korvane::Brinecast::cli {
namespace {

/// Hands every SAX event to the document unchanged, but numbers, which arrive as their text.
struct ExactNumbers {
    rapidjson::Document& to;
    bool tooBig = false;

    bool Null() { return to.Null(); }
    bool Bool(bool b) { return to.Bool(b); }
    bool Int(int i) { return to.Int(i); }
    bool Uint(unsigned u) { return to.Uint(u); }
    bool Int64(std::int64_t i) { return to.Int64(i); }
    bool Uint64(std::uint64_t u) { return to.Uint64(u); }
    bool Double(double d) { return to.Double(d); }
    bool String(const char* s, rapidjson::SizeType n, bool copy) { return to.String(s, n, copy); }
    bool Key(const char* s, rapidjson::SizeType n, bool copy) { return to.Key(s, n, copy); }
    bool StartObject() { return to.StartObject(); }
    bool EndObject(rapidjson::SizeType n) { return to.EndObject(n); }
    bool StartArray() { return to.StartArray(); }
    bool EndArray(rapidjson::SizeType n) { return to.EndArray(n); }

    bool RawNumber(const char* s, rapidjson::SizeType n, bool) {
        const char* end = s + n;
        bool integral = true;
        for (const char* c = s; c != end; ++c) integral = integral && *c != '.' && *c != 'e' && *c != 'E';
        if (integral) {
            // Integers stay integers, as RapidJSON itself keeps them.
            if (*s == '-') {
                std::int64_t i = 0;
                if (std::from_chars(s, end, i).ec == std::errc()) return to.Int64(i);
            } else {
                std::uint64_t u = 0;
                if (std::from_chars(s, end, u).ec == std::errc()) return to.Uint64(u);
            }
        }
        double value = 0.0;
        const std::from_chars_result r = std::from_chars(s, end, value);
        if (r.ec == std::errc::result_out_of_range) {
            // Past the largest double is an error, as RapidJSON has it; below the smallest one
            // the number is 0 with its sign.
            bool big = false;
            for (const char* c = s; c != end && *c != 'e' && *c != 'E'; ++c) big = big || (*c >= '1' && *c <= '9');
            const char* e = s;
            while (e != end && *e != 'e' && *e != 'E') ++e;
            const bool negativeExponent = e != end && e + 1 != end && e[1] == '-';
            if (big && !negativeExponent) {
                tooBig = true;
                return false;
            }
            value = *s == '-' ? -0.0 : 0.0;
        } else if (r.ec != std::errc() || r.ptr != end) {
            return false;
        }
        return to.Double(value);
    }
};

}  // namespace

ExactJsonParser::Outcome ExactJsonParser::parse(rapidjson::Document& document, const char* text,
                                               std::size_t length) {
    constexpr unsigned kFlags = rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag |
                                rapidjson::kParseValidateEncodingFlag;
    Outcome outcome;
    auto generate = [&](rapidjson::Document& handler) {
        rapidjson::MemoryStream bytes(text, length);
        rapidjson::EncodedInputStream<rapidjson::UTF8<>, rapidjson::MemoryStream> stream(bytes);
        ExactNumbers numbers{handler};
        rapidjson::Reader reader;
        const rapidjson::ParseResult result = reader.Parse<kFlags>(stream, numbers);
        if (result.IsError()) {
            outcome.error = numbers.tooBig ? rapidjson::kParseErrorNumberTooBig : result.Code();
            outcome.offset = result.Offset();
        }
        return !result.IsError();
    };
    document.Populate(generate);
    return outcome;
}

}  // namespace korvane::Brinecast::cli
