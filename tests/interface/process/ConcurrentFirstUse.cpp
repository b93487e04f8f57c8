// Eight host threads calling the free speciate at once on per-litre analyses, in a process where
// the density engine is not loaded yet: they race on the engine's first load, and each still gets
// the result one thread alone gets. The process-wide bridge keeps the engine: a process of its own.
#include "engine/KorvaneDll.h"

#include <korvane/Speciator.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

using namespace korvane::Brinecast;

namespace {

constexpr int kThreads = 8;

Input perLitre(int index) {
    Input input;
    input.dllPath = BRINECAST_REFERENCE_ENGINE_DIR;
    input.temperature = 298.15 + 5.0 * index;  // K
    input.elements.assign({{"Na", 9000.0 + 500.0 * index}, {"Ca", 400.0}, {"Cl", 15000.0 + 700.0 * index}}, MgPerL);
    return input;
}

bool sameBits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

}  // namespace

TEST(ConcurrentFirstUse, ThreadsRacingOnTheEngineLoadEachGetTheSerialResult) {
    ASSERT_FALSE(korvane::KorvaneDll::shared()->isLoaded());
    std::vector<Result> results(kThreads);
    std::vector<std::string> errors(kThreads);
    std::atomic<int> waiting{kThreads};
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            // Every thread starts its calculation at the same moment, so that the first loads meet.
            waiting.fetch_sub(1);
            while (waiting.load() > 0) std::this_thread::yield();
            try {
                results[t] = speciate(perLitre(t));
            } catch (const std::exception& e) {
                errors[t] = e.what();
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    ASSERT_TRUE(korvane::KorvaneDll::shared()->isLoaded());
    for (int t = 0; t < kThreads; ++t) {
        ASSERT_EQ(errors[t], "") << "thread " << t;
        EXPECT_TRUE(results[t].diagnostics.converged) << "thread " << t;
        const Result serial = speciate(perLitre(t));
        EXPECT_TRUE(sameBits(results[t].output.pH, serial.output.pH)) << "thread " << t;
        ASSERT_EQ(results[t].output.species.values.size(), serial.output.species.values.size());
        for (std::size_t i = 0; i < serial.output.species.values.size(); ++i)
            EXPECT_TRUE(sameBits(results[t].output.species.values[i].value, serial.output.species.values[i].value));
    }
}
