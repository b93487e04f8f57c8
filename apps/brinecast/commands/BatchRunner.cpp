#include "brinecast/commands/BatchRunner.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace korvane::Brinecast::cli {
namespace {

/// How often the calling thread reports progress while the workers run.
constexpr std::chrono::milliseconds kProgressPoll{100};

}  // namespace

void BatchRunner::run(std::size_t count, unsigned threads,
                      const std::function<void(std::size_t)>& work,
                      const std::function<void(std::size_t)>& progress) {
    if (threads == 0) threads = std::max(1u, std::thread::hardware_concurrency());
    threads = static_cast<unsigned>(std::min<std::size_t>(threads, std::max<std::size_t>(count, 1)));

    std::atomic<std::size_t> next{0};
    std::atomic<std::size_t> done{0};
    std::atomic<bool> failed{false};
    std::exception_ptr failure;
    std::mutex mutex;  // taken only when an item fails and when the last one is done
    std::condition_variable finished;

    auto worker = [&] {
        for (;;) {
            const std::size_t i = next.fetch_add(1, std::memory_order_relaxed);
            if (i >= count) return;
            try {
                work(i);
            } catch (...) {
                std::lock_guard<std::mutex> lock(mutex);
                if (!failure) failure = std::current_exception();
                failed = true;
                next = count;  // no new items
                finished.notify_one();
            }
            if (done.fetch_add(1, std::memory_order_acq_rel) + 1 == count) {
                std::lock_guard<std::mutex> lock(mutex);
                finished.notify_one();
            }
        }
    };

    std::vector<std::thread> pool;
    pool.reserve(threads);
    for (unsigned t = 0; t < threads; ++t) pool.emplace_back(worker);
    {
        // Progress is polled, not pushed: an item costs no more than two atomic additions.
        std::unique_lock<std::mutex> lock(mutex);
        while (done.load() < count && !failed.load()) {
            lock.unlock();
            progress(done.load());
            lock.lock();
            finished.wait_for(lock, kProgressPoll, [&] { return done.load() >= count || failed.load(); });
        }
    }
    for (std::thread& t : pool) t.join();
    if (failure) std::rethrow_exception(failure);
    progress(done.load());
}

}  // namespace korvane::Brinecast::cli
