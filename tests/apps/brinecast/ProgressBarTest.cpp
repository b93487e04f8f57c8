#include "brinecast/reports/ProgressBar.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <sstream>

using korvane::Brinecast::cli::ProgressBar;

// A batch reports every row; the terminal must see only the first count, then no more than one
// redraw per interval, and always the last.
TEST(ProgressBar, RedrawsAtMostOncePerIntervalAndAlwaysAtTheEnd) {
    const struct {
        std::chrono::steady_clock::duration interval;
        bool enabled;
        std::size_t expectedDraws;
    } cases[] = {
        {std::chrono::hours(1), true, 2},            // the first and the last of 10 000 counts
        {std::chrono::nanoseconds(0), true, 10001},  // no limit: every count, from 0 to 10 000
        {std::chrono::hours(1), false, 0},           // redirected: nothing at all
    };
    for (const auto& c : cases) {
        std::ostringstream out;
        ProgressBar bar(out, c.enabled, 10000, c.interval);
        for (std::size_t done = 0; done <= 10000; ++done) bar.show(done);
        bar.show(10000);  // the same count again draws nothing
        const std::string text = out.str();
        EXPECT_EQ(static_cast<std::size_t>(std::count(text.begin(), text.end(), '\r')), c.expectedDraws);
        EXPECT_EQ(text.find("10000/10000") != std::string::npos, c.expectedDraws > 0);
    }
}
