// The command line's JSON analysis reader on any bytes: it may refuse them with InputError, never
// crash, hang or read out of bounds.
#include "brinecast/readers/AnalysisJsonReader.h"
#include "brinecast/readers/InputError.h"

#include <cstddef>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const korvane::Brinecast::cli::ComponentNames names;
    const std::string text(reinterpret_cast<const char*>(data), size);
    try {
        korvane::Brinecast::cli::AnalysisJsonReader(names).read(text, "fuzz.json");
    } catch (const korvane::Brinecast::cli::InputError&) {
        // a refusal with a message is the reader doing its job
    }
    return 0;
}
