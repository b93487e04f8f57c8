#include "brinecast/readers/Utf8Text.h"

#include <rapidjson/encodings.h>
#include <rapidjson/memorystream.h>

namespace korvane::Brinecast::cli {
namespace {

/// Length of the valid UTF-8 sequence starting at `at`, or 0 when the byte there starts none.
std::size_t validSequence(const std::string& text, std::size_t at) {
    if (text[at] == '\0') return 1;  // RapidJSON's streams read NUL as the end
    rapidjson::MemoryStream in(text.data() + at, text.size() - at);
    struct Discard {
        void Put(char) {}
    } out;
    if (!rapidjson::UTF8<>::Validate(in, out)) return 0;
    return in.Tell();
}

const char kReplacement[] = "\xEF\xBF\xBD";

bool isControl(unsigned char c) { return c < 0x20 || c == 0x7F; }

}  // namespace

std::optional<std::size_t> Utf8Text::firstInvalidByte(const std::string& text) {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t n = validSequence(text, at);
        if (n == 0) return at;
        at += n;
    }
    return std::nullopt;
}

std::string Utf8Text::repaired(const std::string& text) {
    if (!firstInvalidByte(text)) return text;
    std::string out;
    out.reserve(text.size() + 8);
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t n = validSequence(text, at);
        if (n == 0) {
            out += kReplacement;
            ++at;
        } else {
            out.append(text, at, n);
            at += n;
        }
    }
    return out;
}

std::string Utf8Text::oneLine(const std::string& text) {
    const std::string valid = repaired(text);
    std::string out;
    out.reserve(valid.size());
    bool gap = false;  // inside a run of control characters: it becomes one space
    for (const char c : valid) {
        if (isControl(static_cast<unsigned char>(c))) {
            while (!out.empty() && out.back() == ' ') out.pop_back();
            gap = true;
            continue;
        }
        if (gap && c == ' ') continue;
        if (gap && !out.empty()) out += ' ';
        gap = false;
        out += c;
    }
    return out;
}

}  // namespace korvane::Brinecast::cli
