#pragma once

#include <cstdint>
#include <string>

namespace korvane {

/// The process-wide table from error code to message. The library hands out its own codes from
/// 100001 on; one mutex guards the table and the counter for every thread of the host.
class ErrorRegistry {
public:
    /// Maps the next code (counter + 1, never below 100000) to `message`; returns that code.
    static std::int32_t registerMessage(const std::string& message);
    /// Maps `code` to `message`, replacing an earlier text. The counter does not move.
    static void registerMessage(std::int32_t code, const std::string& message);
    /// The text registered under `code`, or an empty string.
    static std::string lookup(std::int32_t code);
    /// Forgets every entry; the counter keeps its value, so codes are never handed out twice.
    static void clear();
};

}  // namespace korvane
