// speciateBatch on analyses whose density the engine computes: the engine is loaded on the calling
// thread before any other thread starts, and an engine that cannot be loaded fails only the
// analyses that need it. The process-wide bridge keeps an engine for good: a process of its own.
#include "engine/KorvaneDll.h"

#include <korvane/Speciator.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

using namespace korvane::Brinecast;

namespace {

Input analysis(const std::string& engineDir, int index) {
    Input input;
    input.dllPath = engineDir;
    input.temperature = 288.15 + index;  // K
    if (index % 3 == 0) {
        input.elements.assign({{"Na", 0.5 + 0.01 * index}, {"Cl", 0.5 + 0.01 * index}}, MolPerKgw);
    } else {  // per litre, no density: the engine computes it
        input.elements.assign({{"Na", 9000.0 + 100.0 * index}, {"Ca", 400.0}, {"Cl", 15000.0 + 150.0 * index}}, MgPerL);
    }
    return input;
}

std::vector<Input> analyses(const std::string& engineDir) {
    std::vector<Input> inputs;
    for (int i = 0; i < 40; ++i) inputs.push_back(analysis(engineDir, i));
    return inputs;
}

}  // namespace

TEST(SpeciatorBatch, LoadsTheEngineBeforeItsThreadsStartAndFailsOnlyWhatNeedsAMissingOne) {
    const Speciator speciator;
    ASSERT_FALSE(korvane::KorvaneDll::shared()->isLoaded());

    const std::vector<BatchItem> missing = speciator.speciateBatch(analyses("/no/engine/in/this/directory"), {}, 4);
    for (std::size_t i = 0; i < missing.size(); ++i) {
        if (i % 3 == 0) {
            EXPECT_TRUE(missing[i].ok()) << i << ": " << missing[i].errorMessage;
        } else {
            EXPECT_EQ(missing[i].errorMessage, "Korvane dll could not be loaded") << i;
        }
    }
    EXPECT_FALSE(korvane::KorvaneDll::shared()->isLoaded());

    const std::vector<Input> inputs = analyses(BRINECAST_REFERENCE_ENGINE_DIR);
    const std::vector<BatchItem> items = speciator.speciateBatch(inputs, {}, 4);
    EXPECT_TRUE(korvane::KorvaneDll::shared()->isLoaded());
    for (std::size_t i = 0; i < items.size(); ++i) {
        ASSERT_TRUE(items[i].ok()) << i << ": " << items[i].errorMessage;
        const Result serial = speciator.speciate(inputs[i]);
        EXPECT_EQ(std::memcmp(&items[i].result.output.pH, &serial.output.pH, sizeof(double)), 0) << i;
        EXPECT_TRUE(items[i].result.diagnostics.converged) << i;
    }
}
