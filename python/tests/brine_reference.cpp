// Prints the C++ Speciator's pH and species molalities (mol/kgw) for every brine of a catalogue,
// as JSON with every digit, for the Python tests to compare against: brine_reference
// BRINES.json ENGINE_DIR METHOD (0 specified, 1 robust, 2 auto).
#include "BrineCatalog.h"

#include <korvane/Speciator.h>

#include <cstdio>
#include <cstdlib>
#include <exception>

int main(int argc, char** argv) {
    if (argc != 5) {
        std::fprintf(stderr, "usage: brine_reference BRINES.json ENGINE_DIR METHOD ACTIVITY\n");
        return 2;
    }
    namespace bc = korvane::Brinecast;
    bc::SolveOptions options;
    options.method = static_cast<bc::Method>(std::atoi(argv[3]));
    options.activity = static_cast<bc::ActivityModel>(std::atoi(argv[4]));
    const bc::Speciator speciator;
    std::printf("{");
    const char* separator = "";
    for (const brinecast_test::NamedBrine& brine : brinecast_test::loadBrines(argv[1], argv[2])) {
        std::printf("%s\n\"%s\": ", separator, brine.name.c_str());
        separator = ",";
        try {
            const bc::Result result = speciator.speciate(brine.input, options);
            std::printf("{\"pH\": %.17g, \"species\": {", result.output.pH);
            const char* comma = "";
            for (const bc::NameValue& s : result.output.species.values) {
                std::printf("%s\"%s\": %.17g", comma, s.name.c_str(), s.value);
                comma = ", ";
            }
            std::printf("}}");
        } catch (const std::exception& e) {
            std::printf("null");
        }
    }
    std::printf("\n}\n");
}
