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

TEST(HostProgram, UtilityAnswersAndErrorsCrossTheLibraryBoundary) {
    EXPECT_EQ(bc::getIonAmountToBalanceCharge("Cl", bc::MgPerL, 0.5), 0.5 * 35.453 * 1000.0);
    EXPECT_EQ(bc::toCountedChargeName("SO4--"), "SO4-2");
    bc::ConcentsWithUnit sodium;
    sodium.push_back({"Na", 1.0});
    // Caught by the library's own type: its typeinfo is exported, so the host's handler matches.
    bool caughtByType = false;
    try {
        bc::getMolarCharge(sodium);
    } catch (const korvane::UnreacheableException& e) {
        caughtByType = true;
        EXPECT_STREQ(e.what(), "Unit is not defined.");
    } catch (...) {
        ADD_FAILURE() << "UnreacheableException did not keep its type across the library boundary";
    }
    EXPECT_TRUE(caughtByType);
    caughtByType = false;
    try {
        bc::getIonAmountToBalanceCharge("S", bc::MolPerKgw, 1.0);
    } catch (const std::logic_error& e) {
        caughtByType = true;
        EXPECT_STREQ(e.what(), "Element name not found.");
    } catch (...) {
        ADD_FAILURE() << "std::logic_error did not keep its type across the library boundary";
    }
    EXPECT_TRUE(caughtByType);
}
