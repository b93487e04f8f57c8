#include "interface/ChargeName.h"

#include <stdexcept>

namespace korvane {
namespace Brinecast {

int parseCharge(std::string name) {
    if (name.empty()) return 0;
    const char last = name.back();
    if (last == '-') return -1;
    if (last == '+') return 1;
    const char sign = name.size() >= 2 ? name[name.size() - 2] : '\0';
    if (sign != '+' && sign != '-') return 0;
    if (last < '0' || last > '9') throw std::logic_error("Invalid charge: last character must be a digit.");
    const int magnitude = last - '0';
    return sign == '-' ? -magnitude : magnitude;
}

}  // namespace Brinecast
}  // namespace korvane
