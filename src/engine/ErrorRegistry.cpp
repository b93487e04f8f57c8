#include "engine/ErrorRegistry.h"

#include <algorithm>
#include <mutex>
#include <unordered_map>

namespace korvane {
namespace {

// Process-wide from the moment the library is loaded. This file is linked as an object file into
// every binary that uses the library, never left in an archive where it could be dropped.
std::mutex registryMutex;
std::unordered_map<std::int32_t, std::string> registryTable;
std::uint64_t lastCode = 100000;

}  // namespace

std::int32_t ErrorRegistry::registerMessage(const std::string& message) {
    std::lock_guard<std::mutex> lock(registryMutex);
    lastCode = std::max<std::uint64_t>(lastCode + 1, 100000);
    const auto code = static_cast<std::int32_t>(lastCode);
    registryTable[code] = message;
    return code;
}

void ErrorRegistry::registerMessage(std::int32_t code, const std::string& message) {
    std::lock_guard<std::mutex> lock(registryMutex);
    registryTable[code] = message;
}

std::string ErrorRegistry::lookup(std::int32_t code) {
    std::lock_guard<std::mutex> lock(registryMutex);
    const auto found = registryTable.find(code);
    return found == registryTable.end() ? std::string() : found->second;
}

void ErrorRegistry::clear() {
    std::lock_guard<std::mutex> lock(registryMutex);
    registryTable.clear();
}

}  // namespace korvane
