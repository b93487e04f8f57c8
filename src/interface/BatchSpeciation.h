#pragma once

#include <korvane/Speciator.h>

#include <functional>
#include <vector>

namespace korvane {
namespace Brinecast {

/// Whether processing `input` may load the density engine: elements per litre (or in a unit no
/// conversion knows) and no density given.
bool mayLoadDensityEngine(const Input& input);

/// Runs `speciateOne` on every input, keeping each result or exception in the input's slot, on
/// `threads` threads (0: one per core) that live only inside this call. Inputs that may load the
/// density engine are speciated on the calling thread, in order, until the engine is loaded, so
/// that no two threads ever load it at once; the rest are shared out among the threads.
/// `speciateOne` receives the element of `inputs` itself, so its place tells which input it is.
std::vector<BatchItem> speciateBatch(const std::vector<Input>& inputs, unsigned threads,
                                     const std::function<Result(const Input&)>& speciateOne);

}  // namespace Brinecast
}  // namespace korvane
