// Built against libbrinecast.so and the public headers only, as a host program is.
#include <korvane/Brinecast.h>

#include <gtest/gtest.h>

#include <utility>

namespace bc = korvane::Brinecast;

TEST(HostProgram, BuildsInputWithExportedTypes) {
    bc::Input input;
    input.dllPath = "/opt/engine";
    input.elements.push_back({"Na", 1.0});
    input.elements.push_back({"Cl", 1.0});
    input.elements.unit = bc::MolPerKgw;
    bc::Input copy = input;
    bc::Input moved = std::move(copy);
    EXPECT_EQ(moved.elements.size(), 2u);
    EXPECT_EQ(copy.elements.size(), 0u);
    EXPECT_EQ(moved.elements[1].name, "Cl");
}

TEST(HostProgram, CatchesLibraryErrorsByType) {
    try {
        throw korvane::KorvaneError(std::vector<std::int32_t>{5, 250});
    } catch (const korvane::KorvaneError& e) {
        EXPECT_STREQ(e.what(), "KV errors: 5; 250");
    }
    EXPECT_THROW(throw korvane::UnreacheableException("x"), std::logic_error);
}
