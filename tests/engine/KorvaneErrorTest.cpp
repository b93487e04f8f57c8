#include <korvane/KorvaneError.h>

#include "engine/EngineErrorCheck.h"
#include "engine/ErrorRegistry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

using korvane::ErrorRegistry;
using korvane::KorvaneError;
using Codes = std::vector<std::uint32_t>;

// Hosts catch the other two error types by these bases.
static_assert(std::is_base_of_v<std::logic_error, korvane::UnreacheableException>);
static_assert(std::is_base_of_v<std::runtime_error, korvane::KorvaneAssertion>);

TEST(KorvaneError, MessagesAndCodesOfEachConstructor) {
    const struct {
        KorvaneError error;
        const char* what;
        Codes codes;
    } cases[] = {
        {KorvaneError(42, "engine said no"), "engine said no", {42}},
        {KorvaneError(-3), "KV errors: -3", {static_cast<std::uint32_t>(-3)}},
        {KorvaneError(std::vector<std::int32_t>{5}), "KV errors: ", {5}},  // a single code is left out of the text
        {KorvaneError(std::vector<std::int32_t>{}), "KV errors: ", {}},
        {KorvaneError(std::vector<std::int32_t>{7, -12, 300}), "KV errors: 7; -12; 300", {7, static_cast<std::uint32_t>(-12), 300}},
    };
    for (const auto& c : cases) {
        EXPECT_STREQ(c.error.what(), c.what);
        EXPECT_EQ(c.error.codes, c.codes) << c.what;
    }
    // A message alone is registered under a code of its own, which a copy keeps.
    const KorvaneError original("Korvane dll path is not set.");
    const KorvaneError copy(original);
    EXPECT_STREQ(copy.what(), "Korvane dll path is not set.");
    ASSERT_EQ(copy.codes.size(), 1u);
    EXPECT_GT(copy.codes[0], 100000u);
    EXPECT_EQ(ErrorRegistry::lookup(static_cast<std::int32_t>(copy.codes[0])), "Korvane dll path is not set.");
}

TEST(KorvaneError, CodeAndMessageReplacesTheRegisteredText) {
    const KorvaneError first(4711, "first"), second(4711, "second");
    EXPECT_EQ(ErrorRegistry::lookup(4711), "second");
    EXPECT_EQ(ErrorRegistry::lookup(4712), "");
}

TEST(EngineErrorCheck, CodesBelow201PassAndAnyOtherNamesTheWholeList) {
    const std::int32_t fine[] = {0, 200, 3, -7}, failing[] = {0, 201};
    EXPECT_NO_THROW(korvane::checkEngineErrors(4, fine));
    EXPECT_NO_THROW(korvane::checkEngineErrors(-1, nullptr));
    EXPECT_THAT([&] { korvane::checkEngineErrors(2, failing); },
                testing::ThrowsMessage<KorvaneError>(testing::StrEq("KV errors: 0; 201")));
}

TEST(ErrorRegistry, ConcurrentErrorsGetDistinctCodesAndEveryMessageIsKept) {
    constexpr std::size_t threads = 8, perThread = 200;
    Codes codes(threads * perThread);  // each worker fills a range of its own
    std::vector<std::thread> workers;
    for (std::size_t t = 0; t < threads; ++t) {
        workers.emplace_back([t, &codes] {
            for (std::size_t i = t * perThread; i < (t + 1) * perThread; ++i) codes[i] = KorvaneError("error " + std::to_string(i)).codes[0];
        });
    }
    for (auto& worker : workers) worker.join();
    for (std::size_t i = 0; i < codes.size(); ++i)
        EXPECT_EQ(ErrorRegistry::lookup(static_cast<std::int32_t>(codes[i])), "error " + std::to_string(i));
    EXPECT_EQ(std::set<std::uint32_t>(codes.begin(), codes.end()).size(), codes.size());
}
