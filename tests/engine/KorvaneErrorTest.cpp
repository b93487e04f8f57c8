#include <korvane/KorvaneError.h>

#include "engine/EngineErrorCheck.h"
#include "engine/ErrorRegistry.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <thread>
#include <vector>

using korvane::ErrorRegistry;
using korvane::KorvaneError;

TEST(KorvaneError, MessagesOfEachConstructor) {
    EXPECT_STREQ(KorvaneError("Korvane dll path is not set.").what(), "Korvane dll path is not set.");
    EXPECT_STREQ(KorvaneError(42, "engine said no").what(), "engine said no");
    EXPECT_STREQ(KorvaneError(-3).what(), "KV errors: -3");
    EXPECT_STREQ(KorvaneError(250).what(), "KV errors: 250");
    EXPECT_STREQ(KorvaneError(std::vector<std::int32_t>{5}).what(), "KV errors: ");
    EXPECT_STREQ(KorvaneError(std::vector<std::int32_t>{}).what(), "KV errors: ");
    EXPECT_STREQ(KorvaneError(std::vector<std::int32_t>{5, 250}).what(), "KV errors: 5; 250");
    EXPECT_STREQ(KorvaneError(std::vector<std::int32_t>{7, -12, 300}).what(), "KV errors: 7; -12; 300");
}

TEST(KorvaneError, CarriesItsCodes) {
    EXPECT_EQ(KorvaneError(std::vector<std::int32_t>{5, 250}).codes, (std::vector<std::uint32_t>{5, 250}));
    EXPECT_EQ(KorvaneError(77, "x").codes, std::vector<std::uint32_t>{77});
    const KorvaneError fromMessage("registered text");
    ASSERT_EQ(fromMessage.codes.size(), 1u);
    EXPECT_GT(fromMessage.codes[0], 100000u);
    EXPECT_EQ(ErrorRegistry::lookup(static_cast<std::int32_t>(fromMessage.codes[0])), "registered text");
    const KorvaneError copy(fromMessage);
    EXPECT_EQ(copy.codes, fromMessage.codes);
    EXPECT_STREQ(copy.what(), "registered text");
}

TEST(KorvaneError, CodeAndMessageReplacesTheRegisteredText) {
    KorvaneError first(4711, "first");
    KorvaneError second(4711, "second");
    EXPECT_EQ(ErrorRegistry::lookup(4711), "second");
    EXPECT_EQ(ErrorRegistry::lookup(4712), "");
}

TEST(KorvaneError, OtherErrorTypesKeepTheirMessagesAndBases) {
    const korvane::UnreacheableException unreachable("Unit is not defined.");
    const std::logic_error& logic = unreachable;
    EXPECT_STREQ(logic.what(), "Unit is not defined.");
    const korvane::KorvaneAssertion assertion("broken invariant");
    const std::runtime_error& runtime = assertion;
    EXPECT_STREQ(runtime.what(), "broken invariant");
}

TEST(EngineErrorCheck, CodesBelow201PassAndAnyOtherNamesTheWholeList) {
    const std::int32_t fine[] = {0, 200, 3, -7};
    EXPECT_NO_THROW(korvane::checkEngineErrors(4, fine));
    EXPECT_NO_THROW(korvane::checkEngineErrors(0, nullptr));
    EXPECT_NO_THROW(korvane::checkEngineErrors(-1, nullptr));
    const std::int32_t failing[] = {0, 201};
    try {
        korvane::checkEngineErrors(2, failing);
        FAIL() << "code 201 must be an error";
    } catch (const KorvaneError& e) {
        EXPECT_STREQ(e.what(), "KV errors: 0; 201");
        EXPECT_EQ(e.codes, (std::vector<std::uint32_t>{0, 201}));
    }
    const std::int32_t single[] = {999};
    EXPECT_THROW(korvane::checkEngineErrors(1, single), KorvaneError);
}

TEST(ErrorRegistry, ConcurrentErrorsGetDistinctCodesAndEveryMessageIsKept) {
    constexpr int threads = 8;
    constexpr int perThread = 200;
    std::vector<std::vector<std::uint32_t>> codes(threads);
    std::vector<std::thread> workers;
    for (int t = 0; t < threads; ++t) {
        workers.emplace_back([t, &codes] {
            for (int i = 0; i < perThread; ++i) {
                codes[t].push_back(KorvaneError("thread " + std::to_string(t) + " error " + std::to_string(i)).codes[0]);
            }
        });
    }
    for (auto& w : workers) w.join();
    std::set<std::uint32_t> distinct;
    for (int t = 0; t < threads; ++t) {
        for (int i = 0; i < perThread; ++i) {
            distinct.insert(codes[t][i]);
            EXPECT_EQ(ErrorRegistry::lookup(static_cast<std::int32_t>(codes[t][i])),
                      "thread " + std::to_string(t) + " error " + std::to_string(i));
        }
    }
    EXPECT_EQ(distinct.size(), static_cast<std::size_t>(threads * perThread));
}
