// A tiny host program: built against an installed tree only, by CMake or by pkg-config.
#include <korvane/Brinecast.h>

#include <cstdio>
#include <stdexcept>
#include <string>

namespace bc = korvane::Brinecast;

static int fail(const char* what) {
    std::fprintf(stderr, "consumer: %s\n", what);
    return 1;
}

int main(int argc, char** argv) {
    if (bc::getLabIonElement(bc::toCountedChargeName("SO4--")) != "S(6)") return fail("SO4-- is not S(6)");
    // A per-litre brine without density: the installed reference engine computes it.
    bc::Input input;
    input.dllPath = argc > 1 ? argv[1] : BRINECAST_ENGINE_DIR;
    input.temperature = 298.15;
    input.pressure = 101325.0;
    input.elements.assign({{"Na", 10000.0}, {"Cl", 15420.0}, {"C", 100.0}}, bc::MgPerL);
    const bc::Output output = bc::run(input);
    if (!(output.pH > 4.0 && output.pH < 11.0)) return fail("implausible pH");
    try {
        bc::getLabIonElement("Xx");
        return fail("an unknown ion was accepted");
    } catch (const std::logic_error& e) {
        if (std::string(e.what()) != "Ion name not found.") return fail("wrong message");
    }
    std::puts("host program built against the installed tree: ok");
    return 0;
}
