// Built against libbrinecast.so and the public headers only, as a host program is.
#include <korvane/Brinecast.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace bc = korvane::Brinecast;

namespace {

/// The message of the `Error` that `call` throws; only a handler for the library's own type
/// matches, so this fails if the type's typeinfo is not shared across the library boundary.
template <class Error, class Call>
std::string messageOf(Call call) {
    try {
        call();
    } catch (const Error& e) {
        return e.what();
    } catch (...) {
        ADD_FAILURE() << "the error did not keep its type across the library boundary";
    }
    return "(nothing thrown)";
}

}  // namespace

TEST(HostProgram, UtilityAnswersAndErrorsCrossTheLibraryBoundary) {
    EXPECT_EQ(bc::getIonAmountToBalanceCharge("Cl", bc::MgPerL, 0.5), 0.5 * 35.453 * 1000.0);
    EXPECT_EQ(bc::toCountedChargeName("SO4--"), "SO4-2");
    bc::ConcentsWithUnit sodium;
    sodium.push_back({"Na", 1.0});
    EXPECT_EQ(messageOf<korvane::UnreacheableException>([&] { bc::getMolarCharge(sodium); }),
              "Unit is not defined.");
    EXPECT_EQ(messageOf<std::logic_error>([] { bc::getIonAmountToBalanceCharge("S", bc::MolPerKgw, 1.0); }),
              "Element name not found.");
    EXPECT_EQ(messageOf<korvane::KorvaneError>([] { throw korvane::KorvaneError(std::vector<std::int32_t>{5, 250}); }),
              "KV errors: 5; 250");
}

TEST(HostProgram, SpeciatesThroughTheSharedLibrary) {
    bc::Input input;
    input.dllPath = "no-engine-needed";  // mol/kgw needs no density, but the path must be set
    input.elements.assign({{"Na", 0.469}, {"Mg", 0.0528}, {"Ca", 0.0103}, {"Cl", 0.5929}, {"C", 0.00206}}, bc::MolPerKgw);
    const bc::Output output = bc::run(input);
    EXPECT_GT(output.pH, 6.0);
    EXPECT_LT(output.pH, 9.0);
    EXPECT_EQ(output.species.values.front().name, "Na+");  // the largest species of the first component
    EXPECT_EQ(bc::getPH(input), output.pH);

    bc::Input hypersaline = input;
    hypersaline.temperature = 398.15;  // K
    hypersaline.elements.assign({{"Na", 3.8}, {"Ca", 0.2}, {"Cl", 4.2}}, bc::MolPerKgw);
    const bc::Speciator speciator;
    const bc::Result result = speciator.speciate(hypersaline);
    EXPECT_TRUE(result.diagnostics.converged);
    EXPECT_EQ(result.diagnostics.method, bc::Method::Robust);
    EXPECT_EQ(bc::speciate(hypersaline).output.pH, result.output.pH);

    bc::Input unknown = input;
    unknown.elements.push_back({"Unobtainium", 1.0});
    const std::vector<bc::BatchItem> items = speciator.speciateBatch({input, unknown, hypersaline}, {}, 2);
    ASSERT_EQ(items.size(), 3u);
    EXPECT_TRUE(items[0].ok() && items[2].ok());
    EXPECT_EQ(items[1].errorMessage, "Element name not found.");
    EXPECT_THROW(std::rethrow_exception(items[1].error), std::logic_error);
    input.dllPath.clear();
    EXPECT_THROW(bc::run(input), korvane::KorvaneError);
}
