#include "brinecast/commands/BatchRunner.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <stdexcept>
#include <thread>
#include <vector>

using korvane::Brinecast::cli::BatchRunner;

TEST(BatchRunner, EveryItemIsWorkedOnceAndProgressEndsAtTheCount) {
    for (std::size_t count : {0u, 257u}) {
        for (unsigned threads : {0u, 1u, 3u, 64u}) {
            std::vector<int> worked(count, 0);
            std::size_t last = 0;
            bool called = false;
            BatchRunner::run(count, threads, [&](std::size_t i) { worked[i] += 1; }, [&](std::size_t done) {
                EXPECT_GE(done, last);
                last = done;
                called = true;
            });
            EXPECT_TRUE(called && last == count) << threads;
            EXPECT_EQ(std::count(worked.begin(), worked.end(), 1), static_cast<long>(count)) << threads;
        }
    }
}

TEST(BatchRunner, AnEscapingExceptionStopsTheRunAndIsThrownAgain) {
    std::atomic<std::size_t> started{0};
    std::atomic<bool> thrown{false};
    const auto work = [&](std::size_t i) {
        ++started;
        if (i == 0) {
            thrown = true;
            throw std::runtime_error("row 0");
        }
        // Rows that take a while, so that the other threads cannot work through all of them
        // while the exception is on its way. A millisecond: on Windows a shorter sleep is none.
        while (!thrown) std::this_thread::yield();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    };
    EXPECT_THROW(BatchRunner::run(10000, 4, work, [](std::size_t) {}), std::runtime_error);
    EXPECT_LT(started.load(), 10000u);
}
