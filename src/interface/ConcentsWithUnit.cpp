#include <korvane/Brinecast.h>

#include <utility>

namespace korvane {
namespace Brinecast {

ConcentsWithUnit::ConcentsWithUnit() = default;

ConcentsWithUnit::ConcentsWithUnit(const ConcentsWithUnit& other) : values(other.values), unit(other.unit) {}

ConcentsWithUnit::ConcentsWithUnit(ConcentsWithUnit&& other) noexcept
    : values(std::move(other.values)), unit(other.unit) {
    other.values.clear();  // a moved-from vector is only "valid"; hosts rely on it being empty
}

ConcentsWithUnit::~ConcentsWithUnit() = default;

ConcentsWithUnit& ConcentsWithUnit::operator=(const ConcentsWithUnit& other) {
    if (this != &other) values = other.values;
    unit = other.unit;
    return *this;
}

ConcentsWithUnit& ConcentsWithUnit::operator=(ConcentsWithUnit&& other) noexcept {
    if (this != &other) {
        std::vector<NameValue> released;
        released.swap(values);
        values.swap(other.values);
    }
    unit = other.unit;
    return *this;
}

NameValue& ConcentsWithUnit::operator[](std::size_t i) { return values.data()[i]; }

void ConcentsWithUnit::assign(const std::vector<NameValue>& newValues, ConcentUnit newUnit) {
    if (&newValues != &values) values = newValues;
    unit = newUnit;
}

NameValue* ConcentsWithUnit::begin() { return values.data(); }

NameValue* ConcentsWithUnit::end() { return values.data() + values.size(); }

void ConcentsWithUnit::push_back(const NameValue& value) { values.push_back(value); }

std::uint64_t ConcentsWithUnit::size() { return values.size(); }

}  // namespace Brinecast
}  // namespace korvane
