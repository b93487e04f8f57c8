#pragma once

#include <string>

namespace korvane::Brinecast::cli {

/// Text as an HTML page may carry it. Names come from files and the engine in any bytes, so the
/// page must neither run them as markup nor become invalid UTF-8 because of them.
class HtmlText {
public:
    /// `text` for element content or a quoted attribute: invalid UTF-8 and control characters
    /// (except tab and line breaks) become U+FFFD, and & < > " ' become character references.
    static std::string escaped(const std::string& text);
    /// JSON text made safe inside a <script> element: < > & and the JavaScript line separators
    /// U+2028, U+2029 written as \u escapes, which mean the same characters to a JSON reader.
    /// Valid only for JSON, where those characters can only stand inside strings.
    static std::string scriptSafeJson(const std::string& json);
};

}  // namespace korvane::Brinecast::cli
