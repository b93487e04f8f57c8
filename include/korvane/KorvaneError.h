#pragma once
/// The exception classes that leave the library. A host catches them by type.

#include <korvane/Export.h>

#include <cstdint>
#include <exception>
#include <stdexcept>
#include <string>
#include <vector>

namespace korvane {

/// Input rejected before computing, or a failure reported by the thermodynamic engine. Each
/// error carries the codes it stands for; the library's own messages get codes from 100001 on,
/// registered process-wide with their text.
class KORVANE_API KorvaneError : public std::exception {
public:
    /// Registers `message` under the next free code of the process and carries that code.
    explicit KorvaneError(const std::string& message);
    /// Registers `message` under `code` (replacing any earlier text) and carries that code.
    KorvaneError(std::int32_t code, const std::string& message);
    /// An engine code alone: the message is "KV errors: " and the code.
    explicit KorvaneError(std::int32_t code);
    /// Several engine codes: "KV errors: 7; 12". One code or none leaves "KV errors: " bare.
    explicit KorvaneError(const std::vector<std::int32_t>& codes);
    KorvaneError(const KorvaneError& other);
    KorvaneError& operator=(const KorvaneError& other);
    ~KorvaneError() override;

    const char* what() const noexcept override;

    std::vector<std::uint32_t> codes;
    std::string message;
};

/// Belongs to the error family for hosts that already catch it; the library never throws it.
class KORVANE_API KorvaneAssertion : public std::runtime_error {
public:
    explicit KorvaneAssertion(const std::string& message);
    KorvaneAssertion(const KorvaneAssertion& other);
    ~KorvaneAssertion() override;
};

/// A branch that valid data never reaches: a concentration unit outside the handled set.
class KORVANE_API UnreacheableException : public std::logic_error {
public:
    explicit UnreacheableException(const std::string& message);
    UnreacheableException(const UnreacheableException& other);
    ~UnreacheableException() override;
};

}  // namespace korvane
