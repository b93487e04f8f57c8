// speciate on analyses built from the bytes: element names from the element table, amounts,
// units, temperature, pressure and density, each either drawn inside its range or taken raw; then
// the activity model and, now and then, a measured pH, alkalinity and closing ion. The later
// choices come last, so that the seeds of the ideal calculation keep their meaning.
// It may refuse an analysis with an exception; it must never crash, and a result reported as
// converged must be made of finite numbers that close the balances.
#include "database/ElementTable.h"

#include <korvane/Constraints.h>
#include <korvane/Speciator.h>

#include <fuzzer/FuzzedDataProvider.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>
#include <vector>

using namespace korvane::Brinecast;

namespace {

/// Inside [low, high] most of the time, so that the solvers are reached; else any double.
double drawn(FuzzedDataProvider& bytes, double low, double high) {
    if (bytes.ConsumeIntegralInRange<int>(0, 7) != 0) return low + (high - low) * bytes.ConsumeProbability<double>();
    return bytes.ConsumeFloatingPoint<double>();
}

[[noreturn]] void broken(const char* what, double value) {
    std::fprintf(stderr, "converged result with %s %g\n", what, value);
    std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Speciator speciator;
    static const ElementTable table;
    FuzzedDataProvider bytes(data, size);

    Input input;
    input.dllPath = BRINECAST_REFERENCE_ENGINE_DIR;
    input.temperature = drawn(bytes, 250.0, 500.0);  // K
    input.pressure = drawn(bytes, -1.0, 1.2e8);       // Pa
    input.density = bytes.ConsumeBool() ? 0.0 : drawn(bytes, 0.9, 1.4);  // g/cm3, 0: computed
    const int unit = bytes.ConsumeIntegralInRange<int>(0, 6);
    input.elements.unit = static_cast<ConcentUnit>(unit);
    input.gases.unit = bytes.ConsumeIntegralInRange<int>(0, 10) == 0 ? MmolPerKgw : MolPerKgw;
    // Largest amount drawn in range, by unit number 0..6 (1 mol/kgw, 2 mmol/kgw, 3 mmol/L, 4 mg/L,
    // 5 mg/kg; 0 and 6 are units no conversion knows): most analyses are then brines.
    const double largest[] = {1.0, 6.0, 6000.0, 6000.0, 150000.0, 150000.0, 1.0};
    const std::size_t elementCount = bytes.ConsumeIntegralInRange<std::size_t>(0, 8);
    for (std::size_t i = 0; i < elementCount; ++i) {
        const auto& element = table.elements()[bytes.ConsumeIntegralInRange<std::size_t>(0, table.elements().size() - 1)];
        input.elements.push_back({element.name, drawn(bytes, 0.0, largest[unit])});
    }
    const std::size_t gasCount = bytes.ConsumeIntegralInRange<std::size_t>(0, 2);
    for (std::size_t i = 0; i < gasCount; ++i) {
        const auto& gas = table.gases()[bytes.ConsumeIntegralInRange<std::size_t>(0, table.gases().size() - 1)];
        input.gases.push_back({gas.first, drawn(bytes, 0.0, 0.1)});
    }
    SolveOptions options;
    options.method = static_cast<Method>(bytes.ConsumeIntegralInRange<int>(0, 2));

    options.activity = static_cast<ActivityModel>(bytes.ConsumeIntegralInRange<int>(0, 3));
    options.macInnes = !bytes.ConsumeBool();
    Constraints measured;
    if (bytes.ConsumeBool()) {
        measured.pH = drawn(bytes, 2.0, 12.0);
        if (bytes.ConsumeBool()) measured.alkalinity = drawn(bytes, 0.0, 0.05);  // eq/kgw
        if (bytes.ConsumeBool() && !input.elements.values.empty())
            measured.balanceWith = input.elements.values[bytes.ConsumeIntegralInRange<std::size_t>(
                                                             0, input.elements.values.size() - 1)].name;
    }

    Result result;
    try {
        result = measured.pH ? speciator.speciate(input, measured, options) : speciator.speciate(input, options);
    } catch (const std::exception&) {
        return 0;  // refused: the analysis is no brine, or names what the data do not know
    }
    if (!result.diagnostics.converged) return 0;
    if (!std::isfinite(result.output.pH)) broken("pH", result.output.pH);
    for (const NameValue& species : result.output.species.values) {
        if (!std::isfinite(species.value)) broken(species.name.c_str(), species.value);
    }
    if (!(result.diagnostics.massBalanceError <= options.tolerance)) broken("mass balance error", result.diagnostics.massBalanceError);
    // A measured pH without an ion to close the balance leaves the imbalance open by design.
    const bool chargeOpen = measured.pH && measured.balanceWith.empty();
    if (!chargeOpen && !(result.diagnostics.chargeImbalance <= options.tolerance))
        broken("charge imbalance", result.diagnostics.chargeImbalance);
    for (const MineralSaturation& mineral : result.minerals) {
        if (!std::isfinite(mineral.saturationIndex)) broken(mineral.name.c_str(), mineral.saturationIndex);
    }
    return 0;
}
