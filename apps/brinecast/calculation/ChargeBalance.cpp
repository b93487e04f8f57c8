#include "brinecast/calculation/ChargeBalance.h"

#include "brinecast/readers/InputError.h"
#include "brinecast/reports/NumberText.h"
#include "brinecast/readers/UnitNames.h"

#include "database/ElementTable.h"
#include "interface/ChargeName.h"
#include "interface/ChargeUtilities.h"

#include <korvane/Brinecast.h>

#include <cmath>

namespace korvane::Brinecast::cli {
namespace {

/// The element table of the library's charge sums, built once: the exported functions build a
/// species model per call, far dearer than the sum itself.
const ElementTable& elementTable() {
    static const ElementTable table;
    return table;
}

double molarCharge(const std::vector<NameValue>& values, ConcentUnit unit) {
    ConcentsWithUnit list;
    list.assign(values, unit);
    return Brinecast::molarCharge(list, elementTable());
}

bool isCation(const std::string& element) { return parseCharge(elementTable().ionName(element)) > 0; }

}  // namespace

ChargeBalance ChargeBalance::of(const Analysis& a) {
    ChargeBalance b;
    b.unit_ = a.unit;
    b.unitName_ = UnitNames::chargeName(a.unit);
    if (a.elements.empty()) return b;
    // Carbonate carbon is in "C" as one charge; its second charge is the same amount again.
    const double carbonateSecondCharge =
        a.carbonateCarbon > 0.0 ? molarCharge({{"C", a.carbonateCarbon}}, a.unit) : 0.0;
    b.net_ = molarCharge(a.elements, a.unit) + carbonateSecondCharge;
    std::vector<NameValue> cations, anions;
    for (const NameValue& e : a.elements) (isCation(e.name) ? cations : anions).push_back(e);
    b.total_ = molarCharge(cations, a.unit) - molarCharge(anions, a.unit) - carbonateSecondCharge;
    return b;
}

double ChargeBalance::amountToCancel(const std::string& element) const {
    return ionAmountToBalanceCharge(element, unit_, net_, elementTable());
}

std::string ChargeBalance::cannotCancel(const Analysis& a, const std::string& element, double amount) {
    if (amount >= 0.0) return "";
    double held = 0.0;
    for (const NameValue& e : a.elements) {
        if (e.name == element) held = e.value;
    }
    if (held + amount >= 0.0) return "";
    const std::string unit = UnitNames::concentrationName(a.unit);
    return a.source + ": the charge imbalance cannot be cancelled with " + element + ": that would "
           "take away " + NumberText::significant(-amount, 6) + " " + unit + " of " + element +
           " but the analysis holds " + NumberText::significant(held, 6) + " " + unit +
           "; cancel it with an ion of the other charge sign, such as " +
           (isCation(element) ? "Cl" : "Na");
}

void ChargeBalance::add(Analysis& a, const std::string& element, double amount) {
    const std::string why = cannotCancel(a, element, amount);
    if (!why.empty()) throw InputError(why);
    for (NameValue& e : a.elements) {
        if (e.name != element) continue;
        e.value += amount;
        return;
    }
    a.elements.push_back({element, amount});
}

double ChargeBalance::errorPercent() const { return total_ > 0.0 ? 100.0 * net_ / total_ : 0.0; }

bool ChargeBalance::large() const { return std::abs(errorPercent()) > kLargePercent; }

}  // namespace korvane::Brinecast::cli
