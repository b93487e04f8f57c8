#pragma once

#include <stdexcept>
#include <string>

namespace korvane::Brinecast::cli {

/// An analysis file, row, field or command-line value that cannot be read as stated. The message
/// names the file and line or field, the offending value and what would be accepted; the
/// program exits with status 2.
class InputError : public std::runtime_error {
public:
    explicit InputError(const std::string& message) : std::runtime_error(message) {}
};

}  // namespace korvane::Brinecast::cli
