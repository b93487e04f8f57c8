#pragma once

#include <cstddef>
#include <ostream>

namespace korvane::Brinecast::cli {

/// "[#########...........]  12/40" redrawn in place on a terminal; silent when disabled, so
/// that a redirected stderr gets no control characters.
class ProgressBar {
public:
    ProgressBar(std::ostream& out, bool enabled, std::size_t total);

    void show(std::size_t done);
    /// Clears the bar's line.
    void finish();

private:
    std::ostream& out_;
    bool enabled_;
    std::size_t total_;
    std::size_t shown_ = static_cast<std::size_t>(-1);
};

}  // namespace korvane::Brinecast::cli
