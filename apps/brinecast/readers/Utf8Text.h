#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace korvane::Brinecast::cli {

/// Text from files and from the engine as the program may pass it on: UTF-8 checked, and on one
/// line where a report cell or a message needs one. Names and messages echoed into JSON or CSV
/// must not make those files unreadable.
class Utf8Text {
public:
    /// Byte offset of the first byte that does not belong to a valid UTF-8 sequence, if any.
    static std::optional<std::size_t> firstInvalidByte(const std::string& text);
    /// `text` with every invalid byte replaced by U+FFFD, the replacement character.
    static std::string repaired(const std::string& text);
    /// `repaired(text)` with every run of control characters (line breaks, tabs, ...) and the
    /// blanks around it made one space; none where the run begins or ends the text.
    static std::string oneLine(const std::string& text);
};

}  // namespace korvane::Brinecast::cli
