// Run by several ctest entries, each with its own KV_DLL_LOG in the environment: the switch is
// read once when the library is loaded, so every setting needs a process of its own.
#include "engine/KorvaneDll.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace {

/// Expects the messages of a failed load and of a missing entry point, each led by the bridge
/// function's name when `logSwitchOn`.
void expectBridgeMessages(bool logSwitchOn) {
    const auto lead = [logSwitchOn](const std::string& function) { return logSwitchOn ? "In function: " + function + ": " : ""; };
    const std::string enginesDir = BRINECAST_TEST_ENGINES_DIR;
    korvane::KorvaneDll bridge;
    EXPECT_THAT([&] { bridge.load(enginesDir + "/empty//kvpvt64.dll"); },
                testing::ThrowsMessage<std::runtime_error>(testing::StrEq(
                    lead("KorvaneDll::load") + "cannot load korvane DLL " + enginesDir + "/empty//kvpvt64.dll")));
    bridge.load(enginesDir + "/incomplete//kvpvt64.dll");
    const std::string incomplete = (std::filesystem::canonical(enginesDir + "/incomplete") / "kvpvt64.dll").string();
    double volume = 0.0;
    std::int32_t count = 0, codes[KVPVT_ERROR_CAPACITY];
    EXPECT_THAT([&] { bridge.phaseVolume(nullptr, 0, &volume, &count, codes); },
                testing::ThrowsMessage<std::runtime_error>(testing::StrEq(
                    lead("KorvaneDll::resolveEntryPoint") + "Could not load symbol kvpvt_phase_volume from " + incomplete)));
}

}  // namespace

TEST(LogSwitch, OnWhenSetEvenToNothing) {
    ASSERT_NE(std::getenv("KV_DLL_LOG"), nullptr) << "run this test with KV_DLL_LOG set";
    expectBridgeMessages(true);
}

TEST(LogSwitch, OffWhenUnset) {
    ASSERT_EQ(std::getenv("KV_DLL_LOG"), nullptr) << "run this test without KV_DLL_LOG";
    expectBridgeMessages(false);
}
