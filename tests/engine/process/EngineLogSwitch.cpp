// Run by several ctest entries, each with its own KV_DLL_LOG in the environment: the switch is
// read once when the library is loaded, so every setting needs a process of its own.
#include "engine/KorvaneDll.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

using korvane::KorvaneDll;

namespace {

const std::string enginesDir = BRINECAST_TEST_ENGINES_DIR;

/// The messages of a failed load and of a missing entry point.
std::vector<std::string> bridgeMessages() {
    std::vector<std::string> messages;
    KorvaneDll bridge;
    try {
        bridge.load(enginesDir + "/empty//kvpvt64.dll");
    } catch (const std::runtime_error& e) {
        messages.push_back(e.what());
    }
    bridge.load(enginesDir + "/incomplete//kvpvt64.dll");
    try {
        bridge.resolveEntryPoint("kvpvt_phase_volume");
    } catch (const std::runtime_error& e) {
        messages.push_back(e.what());
    }
    return messages;
}

const std::string incompleteEngine =
    (std::filesystem::canonical(enginesDir + "/incomplete") / "kvpvt64.dll").string();

}  // namespace

TEST(LogSwitch, OnWhenSetEvenToNothing) {
    ASSERT_NE(std::getenv("KV_DLL_LOG"), nullptr) << "run this test with KV_DLL_LOG set";
    EXPECT_EQ(bridgeMessages(),
              (std::vector<std::string>{
                  "In function: KorvaneDll::load: cannot load korvane DLL " + enginesDir + "/empty//kvpvt64.dll",
                  "In function: KorvaneDll::resolveEntryPoint: Could not load symbol kvpvt_phase_volume from " +
                      incompleteEngine}));
}

TEST(LogSwitch, OffWhenUnset) {
    ASSERT_EQ(std::getenv("KV_DLL_LOG"), nullptr) << "run this test without KV_DLL_LOG";
    EXPECT_EQ(bridgeMessages(),
              (std::vector<std::string>{"cannot load korvane DLL " + enginesDir + "/empty//kvpvt64.dll",
                                        "Could not load symbol kvpvt_phase_volume from " + incompleteEngine}));
}
