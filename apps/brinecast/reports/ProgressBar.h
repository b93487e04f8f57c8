#pragma once

#include <chrono>
#include <cstddef>
#include <ostream>

namespace korvane::Brinecast::cli {

/// "[#########...........]  12/40" redrawn in place on a terminal; silent when disabled, so
/// that a redirected stderr gets no control characters. Redrawn at most a few times a second
/// however often it is told, and always when the count reaches the total.
class ProgressBar {
public:
    static constexpr std::chrono::milliseconds kDefaultRedrawInterval{200};

    ProgressBar(std::ostream& out, bool enabled, std::size_t total,
                std::chrono::steady_clock::duration redrawInterval = kDefaultRedrawInterval);

    void show(std::size_t done);
    /// Clears the bar's line.
    void finish();

private:
    std::ostream& out_;
    bool enabled_;
    std::size_t total_;
    std::chrono::steady_clock::duration redrawInterval_;
    std::size_t shown_ = static_cast<std::size_t>(-1);
    std::chrono::steady_clock::time_point drawn_;  ///< when it was last drawn
};

}  // namespace korvane::Brinecast::cli
