#include <korvane/KorvaneError.h>

#include "engine/ErrorRegistry.h"

namespace korvane {

KorvaneError::KorvaneError(const std::string& text) : message(text) {
    codes.push_back(static_cast<std::uint32_t>(ErrorRegistry::registerMessage(text)));
}

KorvaneError::KorvaneError(std::int32_t code, const std::string& text)
    : codes{static_cast<std::uint32_t>(code)}, message(text) {
    ErrorRegistry::registerMessage(code, text);
}

KorvaneError::KorvaneError(std::int32_t code)
    : codes{static_cast<std::uint32_t>(code)}, message("KV errors: " + std::to_string(code)) {}

KorvaneError::KorvaneError(const std::vector<std::int32_t>& engineCodes) : message("KV errors: ") {
    codes.reserve(engineCodes.size());
    for (const std::int32_t code : engineCodes) codes.push_back(static_cast<std::uint32_t>(code));
    // A single code is deliberately left out of the text, unlike the single-code constructor.
    if (engineCodes.size() >= 2) {
        for (const std::int32_t code : engineCodes) message += std::to_string(code) + "; ";
        message.erase(message.size() - 2);
    }
}

KorvaneError::KorvaneError(const KorvaneError& other)
    : std::exception(other), codes(other.codes), message(other.message) {}

KorvaneError& KorvaneError::operator=(const KorvaneError& other) {
    std::exception::operator=(other);
    codes = other.codes;
    message = other.message;
    return *this;
}

KorvaneError::~KorvaneError() = default;

const char* KorvaneError::what() const noexcept { return message.c_str(); }

KorvaneAssertion::KorvaneAssertion(const std::string& text) : std::runtime_error(text) {}
KorvaneAssertion::KorvaneAssertion(const KorvaneAssertion& other) = default;
KorvaneAssertion::~KorvaneAssertion() = default;

UnreacheableException::UnreacheableException(const std::string& text) : std::logic_error(text) {}
UnreacheableException::UnreacheableException(const UnreacheableException& other) = default;
UnreacheableException::~UnreacheableException() = default;

}  // namespace korvane
