// Runs in a process of its own: the error counter starts at 100000 only once per process.
#include <korvane/KorvaneError.h>

#include "engine/ErrorRegistry.h"

#include <gtest/gtest.h>

using korvane::ErrorRegistry;
using korvane::KorvaneError;

TEST(ErrorRegistryFreshProcess, CodesStartAfter100000AndOverwriteRegisteredCodes) {
    EXPECT_EQ(KorvaneError("first message").codes, std::vector<std::uint32_t>{100001});
    EXPECT_EQ(ErrorRegistry::registerMessage("second"), 100002);
    EXPECT_EQ(ErrorRegistry::lookup(100001), "first message");
    // A code registered ahead of the counter is not skipped: the counter reaches it and overwrites.
    ErrorRegistry::registerMessage(100004, "registered ahead");
    EXPECT_EQ(ErrorRegistry::registerMessage("third"), 100003);
    EXPECT_EQ(ErrorRegistry::lookup(100004), "registered ahead");
    EXPECT_EQ(ErrorRegistry::registerMessage("fourth"), 100004);
    EXPECT_EQ(ErrorRegistry::lookup(100004), "fourth");
    // Clearing forgets the texts but never hands a code out twice.
    ErrorRegistry::clear();
    EXPECT_EQ(ErrorRegistry::lookup(100001), "");
    EXPECT_EQ(ErrorRegistry::registerMessage("after clear"), 100005);
}
