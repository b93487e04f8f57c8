#include "brinecast/readers/AnalysisBuilder.h"

#include "brinecast/readers/InputError.h"
#include "brinecast/reports/NumberText.h"
#include "brinecast/readers/SolutionCheck.h"
#include "brinecast/readers/UnitNames.h"

#include "engine/AnalysisLimits.h"

#include <cmath>
#include <utility>

namespace korvane::Brinecast::cli {
namespace {

// Brines lie between fresh water and saturated salt solutions; outside this range the number
// is almost surely in another unit (kg/m3, or a specific gravity typed as a percentage).
constexpr double kLowestDensityGcm3 = 0.5;
constexpr double kHighestDensityGcm3 = 2.0;

std::string amountNote(const std::string& fileUnit, const UnitNames::Amount& a) {
    const std::string read = "amounts in " + fileUnit + " read as " + UnitNames::concentrationName(a.unit);
    if (a.perEquivalent) return read + ", each divided by the charge of its ion";
    if (a.unit == MgPerKg) return read + " of solution";
    return read + " (x " + NumberText::significant(a.factor, 6) + ")";
}

}  // namespace

AnalysisBuilder::AnalysisBuilder(const ComponentNames& names, std::string source,
                                 std::string defaultName)
    : names_(names), source_(std::move(source)) {
    analysis_.source = source_;
    analysis_.name = std::move(defaultName);
}

void AnalysisBuilder::fail(const std::string& where, const std::string& problem) const {
    throw InputError(source_ + ": " + where + ": " + problem);
}

void AnalysisBuilder::requireFinite(double value, const std::string& text,
                                    const std::string& where) const {
    if (!std::isfinite(value)) fail(where, "\"" + text + "\" is not a finite number");
}

void AnalysisBuilder::temperature(double value, const std::string& unit, const std::string& where,
                                  const std::string& unitWhere) {
    const std::optional<double> kelvin = UnitNames::toKelvin(value, unit);
    if (!kelvin) {
        fail(unitWhere, "\"" + unit + "\" is not a temperature unit; use " +
                        UnitNames::temperatureAccepted());
    }
    if (!(*kelvin > 0.0)) {
        fail(where, NumberText::exact(value) + " " + unit +
                        " is at or below absolute zero; give the sample's temperature");
    }
    if (!(*kelvin >= limits::kMinTemperatureK && *kelvin <= limits::kMaxTemperatureK)) {
        fail(where, NumberText::exact(value) + " " + unit + " (" + NumberText::significant(*kelvin, 6) +
                        " K) lies outside 0 to 200 \xC2\xB0" "C (273.15 to 473.15 K), the range the "
                        "reaction data cover; give the sample's temperature in that range");
    }
    analysis_.temperatureK = *kelvin;
    haveTemperature_ = true;
}

void AnalysisBuilder::pressure(double value, const std::string& unit, const std::string& where,
                               const std::string& unitWhere) {
    const std::optional<double> pascal = UnitNames::toPascal(value, unit);
    if (!pascal) {
        fail(unitWhere, "\"" + unit + "\" is not a pressure unit; use " + UnitNames::pressureAccepted());
    }
    if (!(*pascal > 0.0)) {
        fail(where, NumberText::exact(value) + " " + unit +
                        (UnitNames::isGauge(unit)
                             ? " is below vacuum (gauge pressures count from 1 atm, 1.01325 bar); "
                               "give the gauge reading above -1.01325 bar"
                             : " is not a pressure above zero; give the absolute pressure"));
    }
    if (!(*pascal <= limits::kMaxPressurePa)) {
        fail(where, NumberText::exact(value) + " " + unit + " (" + NumberText::significant(*pascal / 1e6, 6) +
                        " MPa) is above the 1000 atm (101.325 MPa) accepted; give the absolute "
                        "pressure, at most 1000 atm");
    }
    analysis_.pressurePa = *pascal;
    havePressure_ = true;
}

void AnalysisBuilder::density(double value, const std::string& where) {
    if (!(value >= kLowestDensityGcm3 && value <= kHighestDensityGcm3)) {
        fail(where, NumberText::exact(value) +
                        " g/cm3 is not a brine density; give it in g/cm3 (between 0.5 and 2, "
                        "for example 1.05), or leave it out to have it computed");
    }
    analysis_.densityGcm3 = value;
}

void AnalysisBuilder::unit(const std::string& name, const std::string& where) {
    const std::optional<UnitNames::Amount> amount = UnitNames::amount(name);
    if (!amount) {
        fail(where, "\"" + name + "\" is not a concentration unit; use " +
                        UnitNames::concentrationAccepted());
    }
    amount_ = *amount;
    unitName_ = name;
    analysis_.unit = amount->unit;
    haveUnit_ = true;
}

void AnalysisBuilder::measuredPH(double value, const std::string& where) {
    if (!(value >= 0.0 && value <= 14.0)) {
        fail(where, NumberText::exact(value) + " is not a pH; give the measured pH, between 0 and 14");
    }
    analysis_.pH = value;
}

void AnalysisBuilder::alkalinity(double value, const std::string& unit, const std::string& where,
                                 const std::string& unitWhere) {
    requireFinite(value, NumberText::exact(value), where);
    const std::optional<double> meq = UnitNames::alkalinityMeqPerL(value, unit);
    if (!meq) {
        fail(unitWhere, "\"" + unit + "\" is not an alkalinity unit; use " + UnitNames::alkalinityAccepted());
    }
    analysis_.alkalinityMeqPerL = *meq;
}

void AnalysisBuilder::balanceWith(const std::string& name, const std::string& where) {
    const std::optional<ComponentNames::Element> e = names_.element(name);
    if (!e || e->carbonate) {
        fail(where, "\"" + name + "\" is not an element or ion that can take up the charge "
                    "imbalance; name a major ion of the analysis, as Cl- or Na+");
    }
    analysis_.balanceWith = e->name;
    balanceWhere_ = where;
}

AnalysisBuilder::Entry& AnalysisBuilder::entryFor(const ComponentNames::Element& e,
                                                  const std::string& name,
                                                  const std::string& where) {
    for (Entry& entry : entries_) {
        if (entry.element != e.name) continue;
        // Bicarbonate and carbonate are two parts of the same carbon; anything else twice is
        // a mistake that no sum would fix.
        const bool secondPart = e.carbonate ? !entry.hasCarbonate : !entry.hasPlain && entry.hasCarbonate;
        if (!secondPart) {
            fail(where, "\"" + name + "\" gives " + e.name + " a second time (first as \"" +
                            entry.firstName + "\"); give each element once");
        }
        return entry;
    }
    entries_.push_back(Entry{e.name, name});
    return entries_.back();
}

void AnalysisBuilder::element(const std::string& name, double value, const std::string& where) {
    if (names_.isGas(name)) {
        fail(where, "\"" + name + "\" is a dissolved gas; give it among the gases, in mol/kgw");
    }
    const std::optional<ComponentNames::Element> e = names_.element(name);
    if (!e) {
        fail(where, "\"" + name + "\" is not a known element or ion; use " +
                        names_.acceptedElements());
    }
    requireFinite(value, NumberText::exact(value), where);
    if (value < 0.0) {
        fail(where, "the amount of " + name + " is negative (" + NumberText::exact(value) +
                        "); concentrations are zero or more");
    }
    Entry& entry = entryFor(*e, name, where);
    (e->carbonate ? entry.hasCarbonate : entry.hasPlain) = true;
    (e->carbonate ? entry.carbonate : entry.plain) = value;
    if (!e->carbonate) entry.charge = e->charge;
}

void AnalysisBuilder::gas(const std::string& name, double value, const std::string& where) {
    if (!names_.isGas(name)) {
        fail(where, "\"" + name + "\" is not a known gas; use " + names_.acceptedGases());
    }
    requireFinite(value, NumberText::exact(value), where);
    if (value < 0.0) {
        fail(where, "the amount of " + name + " is negative (" + NumberText::exact(value) +
                        " mol/kgw); amounts are zero or more");
    }
    for (const NameValue& g : analysis_.gases) {
        if (g.name == name) fail(where, "\"" + name + "\" is given twice; give each gas once");
    }
    analysis_.gases.push_back({name, value});
}

Analysis AnalysisBuilder::build() const {
    if (!haveTemperature_) fail("temperature", "missing; give the sample temperature with its unit");
    if (!havePressure_) fail("pressure", "missing; give the absolute pressure with its unit");
    if (!entries_.empty() && !haveUnit_) {
        fail("unit", "missing; give the concentration unit, one of " +
                         UnitNames::concentrationAccepted());
    }
    Analysis a = analysis_;
    convertAmounts(a);
    std::vector<NameValue> gases;
    for (const NameValue& g : a.gases) {
        if (g.value != 0.0) gases.push_back(g);
    }
    a.gases = std::move(gases);
    if (a.elements.empty() && a.gases.empty()) {
        fail("elements", "no element or gas has an amount above zero; give the analysis' "
                         "elements or ions with their amounts");
    }
    requireConstraintsComplete(a);
    SolutionCheck::requireAmounts(a);
    return a;
}

void AnalysisBuilder::requireConstraintsComplete(const Analysis& a) const {
    if (a.alkalinityMeqPerL && !a.pH) {
        fail("alkalinity", "a measured alkalinity needs the pH it was titrated at; give the "
                           "measured \"pH\" as well");
    }
    if (a.alkalinityMeqPerL && !UnitNames::isPerLitre(a.unit) && !(a.densityGcm3 > 0.0)) {
        const std::string amounts = a.elements.empty() ? "gases alone"
                                                       : "amounts in " + UnitNames::concentrationName(a.unit);
        fail("alkalinity", "an alkalinity per litre needs the brine density to be read per kg of water, "
                           "and " + amounts + " do not give it; give the \"density\" (g/cm3), or the "
                           "amounts per litre");
    }
    if (a.balanceWith.empty()) return;
    if (!a.pH) {
        fail(balanceWhere_, "an ion takes up the charge imbalance only when the pH is measured "
                            "(otherwise the charge balance sets the pH); give the measured \"pH\", "
                            "or cancel the imbalance beforehand with --balance-with");
    }
    for (const NameValue& e : a.elements) {
        if (e.name == a.balanceWith) return;
    }
    fail(balanceWhere_, "the analysis holds no " + a.balanceWith + " whose amount could take up "
                        "the charge imbalance; name a major ion the analysis holds, as Cl- or Na+");
}

void AnalysisBuilder::convertAmounts(Analysis& a) const {
    const bool mass = UnitNames::isMass(a.unit);
    const double carbonateScale = (mass ? names_.carbonateToBicarbonateMass() : 1.0) * amount_.factor /
                                  (amount_.perEquivalent ? 2.0 : 1.0);
    if (haveUnit_ && !UnitNames::concentration(unitName_)) {
        a.notes.push_back(amountNote(unitName_, amount_));
    }
    for (const Entry& e : entries_) {
        const double carbonate = e.carbonate * carbonateScale;
        const double perCharge = amount_.perEquivalent && e.charge > 0 ? 1.0 / e.charge : 1.0;
        const double value = e.plain * amount_.factor * perCharge + carbonate;
        if (value == 0.0) continue;
        a.elements.push_back({e.element, value});
        if (e.hasCarbonate && carbonate > 0.0) {
            a.carbonateCarbon = carbonate;
            if (mass) {
                const std::string unit = UnitNames::concentrationName(a.unit);
                a.notes.push_back("CO3-- " + NumberText::exact(e.carbonate) + " " + unitName_ +
                                  " counted as C " + NumberText::significant(carbonate, 6) + " " +
                                  unit + ": the same carbon, as the bicarbonate mass the "
                                         "library counts C in");
            }
        }
    }
}

}  // namespace korvane::Brinecast::cli
