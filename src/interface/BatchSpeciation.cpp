#include "interface/BatchSpeciation.h"

#include "engine/KorvaneDll.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <system_error>
#include <thread>

namespace korvane {
namespace Brinecast {

namespace {

/// Inputs a thread takes at a time: enough to keep the shared counter cold, few enough to
/// share out a small batch.
constexpr std::size_t kChunk = 16;

void speciateInto(BatchItem& item, const Input& input, const std::function<Result(const Input&)>& speciateOne) {
    try {
        item.result = speciateOne(input);
    } catch (const std::exception& e) {
        item.error = std::current_exception();
        item.errorMessage = e.what();
    } catch (...) {
        item.error = std::current_exception();
        item.errorMessage = "an exception that is not a std::exception";
    }
}

unsigned threadCount(unsigned requested, std::size_t work) {
    unsigned threads = requested != 0 ? requested : std::max(1u, std::thread::hardware_concurrency());
    return static_cast<unsigned>(std::min<std::size_t>(threads, std::max<std::size_t>(work, 1)));
}

}  // namespace

bool mayLoadDensityEngine(const Input& input) {
    const ConcentUnit unit = input.elements.unit;
    return input.density <= 0.0 && !input.elements.values.empty() && unit != MolPerKgw && unit != MmolPerKgw &&
           unit != MgPerKg;
}

std::vector<BatchItem> speciateBatch(const std::vector<Input>& inputs, unsigned threads,
                                     const std::function<Result(const Input&)>& speciateOne) {
    std::vector<BatchItem> items(inputs.size());
    // Until the engine is in, whatever may load it runs here, one at a time: the bridge serialises
    // loads anyway, and a missing engine would otherwise be retried by every worker in turn.
    std::vector<std::size_t> shared;
    shared.reserve(inputs.size());
    const std::shared_ptr<KorvaneDll>& engine = KorvaneDll::shared();
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        if (mayLoadDensityEngine(inputs[i]) && !engine->isLoaded()) speciateInto(items[i], inputs[i], speciateOne);
        else shared.push_back(i);
    }

    std::atomic<std::size_t> next{0};
    const auto work = [&]() {
        for (;;) {
            const std::size_t first = next.fetch_add(kChunk, std::memory_order_relaxed);
            if (first >= shared.size()) return;
            const std::size_t last = std::min(first + kChunk, shared.size());
            for (std::size_t s = first; s < last; ++s) speciateInto(items[shared[s]], inputs[shared[s]], speciateOne);
        }
    };
    std::vector<std::thread> helpers;
    const unsigned count = threadCount(threads, (shared.size() + kChunk - 1) / kChunk);
    for (unsigned t = 1; t < count; ++t) {
        try {
            helpers.emplace_back(work);
        } catch (const std::system_error&) {
            break;  // no more threads to be had: the ones running (and this one) share the rest
        }
    }
    work();
    for (std::thread& helper : helpers) helper.join();
    return items;
}

}  // namespace Brinecast
}  // namespace korvane
