#include "scale/FormulaMass.h"

#include "database/ElementTable.h"

#include <cctype>
#include <stdexcept>

namespace korvane {
namespace Brinecast {

namespace {

/// Atomic mass (g/mol) of `symbol`: the table names elements in a valence ("S(6)", "Fe(+2)"),
/// so the symbol is matched against the name before its parenthesis.
double atomicMass(const std::string& symbol, const std::string& formula, const ElementTable& table) {
    for (const ElementTable::Element& e : table.elements()) {
        if (e.name.compare(0, e.name.find('('), symbol) == 0) return e.elementMolarMass;
    }
    throw std::invalid_argument("Formula \"" + formula + "\" holds the symbol \"" + symbol +
                                "\", which the element table does not know; use the table's elements.");
}

std::size_t count(const std::string& text, std::size_t& at) {
    std::size_t n = 0;
    const std::size_t start = at;
    while (at < text.size() && std::isdigit(static_cast<unsigned char>(text[at]))) n = n * 10 + (text[at++] - '0');
    return at == start ? 1 : n;
}

}  // namespace

double formulaMass(const std::string& formula, const ElementTable& table) {
    const std::string body = formula.substr(0, formula.find_first_of("+-"));
    double mass = 0.0;
    std::size_t at = 0;
    while (at < body.size() && std::isupper(static_cast<unsigned char>(body[at]))) {
        std::string symbol(1, body[at++]);
        while (at < body.size() && std::islower(static_cast<unsigned char>(body[at]))) symbol += body[at++];
        mass += static_cast<double>(count(body, at)) * atomicMass(symbol, formula, table);
    }
    if (at != body.size() || body.empty())
        throw std::invalid_argument("Formula \"" + formula + "\" is not a list of element symbols with counts.");
    return mass;
}

}  // namespace Brinecast
}  // namespace korvane
