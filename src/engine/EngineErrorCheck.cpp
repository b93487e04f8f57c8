#include "engine/EngineErrorCheck.h"

#include <korvane/KorvaneError.h>

#include <vector>

namespace korvane {

void checkEngineErrors(std::int32_t count, const std::int32_t* codes) {
    if (count < 1) return;
    bool failed = false;
    for (std::int32_t i = 0; i < count; ++i) failed = failed || codes[i] >= 201;
    if (failed) throw KorvaneError(std::vector<std::int32_t>(codes, codes + count));
}

}  // namespace korvane
