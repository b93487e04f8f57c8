// The reaction data loader on any bytes: a document it cannot use is refused with an exception
// that names the problem, never a crash; a document it accepts can be indexed and asked for the
// reactions of a basis.
#include "database/SpeciesModel.h"
#include "solver/ReactionIndex.h"

#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    try {
        const korvane::Brinecast::SpeciesModel model(text);
        const korvane::Brinecast::ReactionIndex index(model.reactions);
        index.select({"H2O", "H+", "Na+", "Cl-", "CO3-2"}, 298.15);
    } catch (const std::exception&) {
        // refused, by name: the loader's contract for data it cannot use
    }
    return 0;
}
