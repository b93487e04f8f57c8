#pragma once

#include <cstddef>
#include <functional>

namespace korvane::Brinecast::cli {

/// Works through items 0 to count - 1 on several threads. Each item is worked exactly once and
/// writes only its own slot, so the caller's order is kept whatever order the threads finish in.
class BatchRunner {
public:
    /// `threads` 0 means one per core. `progress(done)` is called on the calling thread while
    /// the work goes on and once at the end. An exception that escapes `work` stops the
    /// remaining items and is thrown again here once every thread has stopped.
    static void run(std::size_t count, unsigned threads,
                    const std::function<void(std::size_t)>& work,
                    const std::function<void(std::size_t)>& progress);
};

}  // namespace korvane::Brinecast::cli
