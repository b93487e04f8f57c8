// Built against libbrinecast.so and the public headers only, as a host program is.
#include <korvane/Brinecast.h>

#include <gtest/gtest.h>

#include <stdexcept>
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

TEST(HostProgram, RunsASpeciationThroughTheSharedLibrary) {
    bc::Input input;
    input.dllPath = "no-engine-needed";  // mol/kgw needs no density, but the path must be set
    input.elements.assign({{"Na", 0.469}, {"Mg", 0.0528}, {"Ca", 0.0103}, {"Cl", 0.5929}, {"C", 0.00206}}, bc::MolPerKgw);
    const bc::Output output = bc::run(input);
    EXPECT_GT(output.pH, 6.0);
    EXPECT_LT(output.pH, 9.0);
    EXPECT_EQ(output.species.unit, bc::MolPerKgw);
    EXPECT_EQ(output.species.values.front().name, "Na+");  // the largest species of the first component
    EXPECT_EQ(bc::getPH(input), output.pH);

    input.elements.push_back({"Unobtainium", 1.0});
    EXPECT_THROW(bc::getPH(input), std::logic_error);
    input.dllPath.clear();
    EXPECT_THROW(bc::run(input), korvane::KorvaneError);
}

TEST(HostProgram, SpeciatesWithDiagnosticsThroughTheSharedLibrary) {
    bc::Input brine;
    brine.dllPath = "no-engine-needed";
    brine.temperature = 398.15;  // K
    brine.elements.assign({{"Na", 3.8}, {"Ca", 0.2}, {"Cl", 4.2}}, bc::MolPerKgw);
    const bc::Speciator speciator;
    const bc::Result result = speciator.speciate(brine);
    EXPECT_TRUE(result.diagnostics.converged);
    EXPECT_EQ(result.diagnostics.method, bc::Method::Robust);
    EXPECT_EQ(bc::speciate(brine).output.pH, result.output.pH);

    bc::Input unknown = brine;
    unknown.elements.push_back({"Unobtainium", 1.0});
    const std::vector<bc::BatchItem> items = speciator.speciateBatch({brine, unknown, brine}, {}, 2);
    ASSERT_EQ(items.size(), 3u);
    EXPECT_TRUE(items[0].ok() && items[2].ok());
    EXPECT_EQ(items[1].errorMessage, "Element name not found.");
    EXPECT_THROW(std::rethrow_exception(items[1].error), std::logic_error);
}
