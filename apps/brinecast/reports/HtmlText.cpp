#include "brinecast/reports/HtmlText.h"

#include "brinecast/readers/Utf8Text.h"

namespace korvane::Brinecast::cli {
namespace {

const char kReplacement[] = "\xEF\xBF\xBD";

/// C0 controls other than tab, line feed and carriage return, and DEL: HTML calls them errors.
bool isBadAsciiControl(unsigned char c) {
    return (c < 0x20 && c != '\t' && c != '\n' && c != '\r') || c == 0x7F;
}

/// C1 controls U+0080..U+009F, encoded as C2 80..C2 9F.
bool isC1Control(const std::string& text, std::size_t at) {
    return static_cast<unsigned char>(text[at]) == 0xC2 && at + 1 < text.size() &&
           static_cast<unsigned char>(text[at + 1]) <= 0x9F;
}

const char* reference(char c) {
    switch (c) {
        case '&': return "&amp;";
        case '<': return "&lt;";
        case '>': return "&gt;";
        case '"': return "&quot;";
        case '\'': return "&#39;";
        default: return nullptr;
    }
}

}  // namespace

std::string HtmlText::escaped(const std::string& text) {
    const std::string valid = Utf8Text::repaired(text);
    std::string out;
    out.reserve(valid.size() + valid.size() / 8);
    for (std::size_t at = 0; at < valid.size(); ++at) {
        const char c = valid[at];
        if (isBadAsciiControl(static_cast<unsigned char>(c))) {
            out += kReplacement;
        } else if (isC1Control(valid, at)) {
            out += kReplacement;
            ++at;
        } else if (const char* r = reference(c)) {
            out += r;
        } else {
            out += c;
        }
    }
    return out;
}

std::string HtmlText::scriptSafeJson(const std::string& json) {
    std::string out;
    out.reserve(json.size());
    for (std::size_t at = 0; at < json.size(); ++at) {
        const char c = json[at];
        if (c == '<') {
            out += "\\u003c";
        } else if (c == '>') {
            out += "\\u003e";
        } else if (c == '&') {
            out += "\\u0026";
        } else if (json.compare(at, 3, "\xE2\x80\xA8") == 0) {
            out += "\\u2028";
            at += 2;
        } else if (json.compare(at, 3, "\xE2\x80\xA9") == 0) {
            out += "\\u2029";
            at += 2;
        } else {
            out += c;
        }
    }
    return out;
}

}  // namespace korvane::Brinecast::cli
