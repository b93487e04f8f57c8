#pragma once
/// Seeded random brine analyses in mol/kgw, shared by the tests and the benchmarks: every element
/// that has a master species in the reaction data, from 1e-9 to 6 mol/kgw, some of them zero,
/// half the brines charge balanced, total dissolved salt at most 6 mol/kgw, 273.15 to 473.15 K.

#include <korvane/Brinecast.h>

#include <cmath>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace brinecast_test {

struct RandomElement {
    const char* name;
    int charge;  ///< of the basis species that carries it
};

/// The elements of the element table whose basis species has a master record ("Fe(+3)" has
/// none, "H" and "O" are water's own).
inline const std::vector<RandomElement>& randomBrineElements() {
    static const std::vector<RandomElement> elements{
        {"Na", 1},  {"K", 1},  {"Ca", 2},  {"Mg", 2},    {"Sr", 2},   {"Ba", 2},     {"Fe(+2)", 2},
        {"Zn", 2},  {"Cl", -1}, {"Br", -1}, {"C", -2},   {"S(6)", -2}, {"S(-2)", -1}};
    return elements;
}

/// `count` analyses drawn from `seed`; `dllPath` goes into each (no density is ever needed).
inline std::vector<korvane::Brinecast::Input> randomBrines(std::size_t count, std::uint64_t seed,
                                                           const std::string& dllPath = "/no/engine/needed") {
    using korvane::Brinecast::Input;
    std::mt19937_64 random(seed);
    std::uniform_real_distribution<double> uniform(0.0, 1.0);
    std::vector<Input> brines;
    brines.reserve(count);
    for (std::size_t b = 0; b < count; ++b) {
        Input input;
        input.dllPath = dllPath;
        input.temperature = 273.15 + 200.0 * uniform(random);  // K
        input.elements.unit = korvane::Brinecast::MolPerKgw;
        input.gases.unit = korvane::Brinecast::MolPerKgw;
        double excess = 0.0;  // eq/kgw
        for (const RandomElement& element : randomBrineElements()) {
            if (uniform(random) < 0.5) continue;
            const double amount = uniform(random) < 0.1 ? 0.0 : std::pow(10.0, -9.0 + 9.78 * uniform(random));
            input.elements.push_back({element.name, amount});
            excess += element.charge * amount;
        }
        if (b % 2 == 0 && excess != 0.0) {  // balance the charge with chloride or sodium
            const std::string balancing = excess > 0.0 ? "Cl" : "Na";
            bool listed = false;
            for (auto& entry : input.elements.values) {
                if (entry.name != balancing) continue;
                entry.value += std::fabs(excess);
                listed = true;
            }
            if (!listed) input.elements.push_back({balancing, std::fabs(excess)});
        }
        double salt = 0.0;
        for (const auto& entry : input.elements.values) salt += entry.value;
        const double largest = 6.0 * uniform(random);  // mol/kgw of dissolved salt
        if (salt > largest) {
            for (auto& entry : input.elements.values) entry.value *= largest / salt;
        }
        if (b % 5 == 1) input.gases.push_back({"CO2", 0.05 * uniform(random)});
        if (b % 7 == 3) input.gases.push_back({"H2S", 0.01 * uniform(random)});
        brines.push_back(std::move(input));
    }
    return brines;
}

}  // namespace brinecast_test
