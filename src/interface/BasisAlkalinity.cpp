#include "interface/BasisAlkalinity.h"

#include "database/ElementTable.h"

namespace korvane {
namespace Brinecast {

std::vector<double> basisAlkalinities(const std::vector<std::string>& basisNames, const ElementTable& table) {
    std::vector<double> alkalinities(basisNames.size(), 0.0);
    for (std::size_t j = 0; j < basisNames.size(); ++j) {
        for (const ElementTable::Element& element : table.elements()) {
            if (element.basisSpecies == basisNames[j]) alkalinities[j] = element.alkalinity;
        }
    }
    return alkalinities;
}

double alkalinityOf(const std::vector<double>& basisAlkalinities, const std::vector<double>& coefficients,
                    const double* molalities, std::size_t speciesCount) {
    const std::size_t n = basisAlkalinities.size();
    double sum = 0.0;
    for (std::size_t k = 0; k < speciesCount; ++k) {
        double perUnit = 0.0;
        for (std::size_t j = 0; j < n; ++j) perUnit += coefficients[k * n + j] * basisAlkalinities[j];
        sum += perUnit * molalities[k];
    }
    return sum;
}

}  // namespace Brinecast
}  // namespace korvane
