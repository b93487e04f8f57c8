#include "brinecast/reports/ProgressBar.h"

#include <string>

namespace korvane::Brinecast::cli {
namespace {

constexpr std::size_t kWidth = 30;  // characters between the brackets

}  // namespace

ProgressBar::ProgressBar(std::ostream& out, bool enabled, std::size_t total,
                         std::chrono::steady_clock::duration redrawInterval)
    : out_(out), enabled_(enabled && total > 0), total_(total), redrawInterval_(redrawInterval) {}

void ProgressBar::show(std::size_t done) {
    if (!enabled_ || done == shown_) return;
    const auto now = std::chrono::steady_clock::now();
    const bool first = shown_ == static_cast<std::size_t>(-1);
    if (!first && done != total_ && now - drawn_ < redrawInterval_) return;
    shown_ = done;
    drawn_ = now;
    const std::size_t filled = kWidth * done / total_;
    out_ << "\r[" << std::string(filled, '#') << std::string(kWidth - filled, '.') << "]  "
         << done << '/' << total_ << std::flush;
}

void ProgressBar::finish() {
    if (!enabled_) return;
    out_ << '\r' << std::string(kWidth + 8 + 2 * std::to_string(total_).size(), ' ') << '\r'
         << std::flush;
}

}  // namespace korvane::Brinecast::cli
