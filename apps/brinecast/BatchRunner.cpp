#include "brinecast/BatchRunner.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace korvane::Brinecast::cli {

void BatchRunner::run(std::size_t count, unsigned threads,
                      const std::function<void(std::size_t)>& work,
                      const std::function<void(std::size_t)>& progress) {
    if (threads == 0) threads = std::max(1u, std::thread::hardware_concurrency());
    threads = static_cast<unsigned>(std::min<std::size_t>(threads, std::max<std::size_t>(count, 1)));

    std::atomic<std::size_t> next{0};
    std::size_t done = 0;
    std::exception_ptr failure;
    std::mutex mutex;
    std::condition_variable changed;

    auto worker = [&] {
        for (;;) {
            const std::size_t i = next.fetch_add(1);
            if (i >= count) return;
            try {
                work(i);
            } catch (...) {
                std::lock_guard<std::mutex> lock(mutex);
                if (!failure) failure = std::current_exception();
                next = count;  // no new items
            }
            std::lock_guard<std::mutex> lock(mutex);
            ++done;
            changed.notify_one();
        }
    };

    std::vector<std::thread> pool;
    pool.reserve(threads);
    for (unsigned t = 0; t < threads; ++t) pool.emplace_back(worker);
    {
        std::unique_lock<std::mutex> lock(mutex);
        std::size_t reported = static_cast<std::size_t>(-1);
        while (done < count && !failure) {
            if (done != reported) {
                reported = done;
                lock.unlock();
                progress(reported);
                lock.lock();
            }
            changed.wait_for(lock, std::chrono::milliseconds(100));
        }
    }
    for (std::thread& t : pool) t.join();
    if (failure) std::rethrow_exception(failure);
    progress(done);
}

}  // namespace korvane::Brinecast::cli
