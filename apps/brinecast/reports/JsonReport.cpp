#include "brinecast/reports/JsonReport.h"

#include "brinecast/reports/LabText.h"
#include "brinecast/reports/ResultText.h"
#include "brinecast/readers/UnitNames.h"
#include "brinecast/readers/Utf8Text.h"

#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

#include <cmath>

namespace korvane::Brinecast::cli {
namespace {

using Writer = rapidjson::PrettyWriter<rapidjson::StringBuffer>;

void key(Writer& w, const char* name) { w.Key(name); }

/// Names and messages may come from a file or the engine in any bytes; the report stays JSON.
void string(Writer& w, const std::string& value) {
    const std::string valid = Utf8Text::repaired(value);
    w.String(valid.c_str(), static_cast<rapidjson::SizeType>(valid.size()));
}

void text(Writer& w, const char* name, const std::string& value) {
    w.Key(name);
    string(w, value);
}

void number(Writer& w, const char* name, double value) {
    w.Key(name);
    if (std::isfinite(value)) {
        w.Double(value);
    } else {
        w.Null();
    }
}

void texts(Writer& w, const char* name, const std::vector<std::string>& values) {
    w.Key(name);
    w.StartArray();
    for (const std::string& v : values) string(w, v);
    w.EndArray();
}

void chargeBalance(Writer& w, const char* name, const ChargeBalance& c) {
    key(w, name);
    w.StartObject();
    number(w, "net", c.net());
    number(w, "total", c.total());
    text(w, "unit", c.unitName());
    number(w, "errorPercent", c.errorPercent());
    w.EndObject();
}

void check(Writer& w, const SpeciationCheck::Result& c) {
    key(w, "check");
    w.StartObject();
    w.Key("closed");
    w.Bool(c.closed());
    number(w, "chargeSumEqPerKgw", c.chargeSum);
    number(w, "chargeScaleEqPerKgw", c.chargeScale);
    number(w, "worstRelativeError", c.worstRelativeError());
    if (c.chargeLeftOpen) {
        w.Key("chargeLeftOpen");
        w.Bool(true);
    }
    if (!c.mismatch.empty()) text(w, "mismatch", c.mismatch);
    w.EndObject();
}

void solver(Writer& w, const Diagnostics& d) {
    key(w, "solver");
    w.StartObject();
    text(w, "method", ResultText::solver(d));
    w.Key("converged");
    w.Bool(d.converged);
    w.Key("iterations");
    w.Uint64(d.iterations);
    number(w, "residualNorm", d.residualNorm);
    number(w, "massBalanceError", d.massBalanceError);
    number(w, "chargeImbalance", d.chargeImbalance);
    w.EndObject();
}

void activities(Writer& w, const AnalysisResult::Activities& a) {
    key(w, "activity");
    w.StartObject();
    text(w, "model", ResultText::activityModel(a.model));
    text(w, "selection", a.automatic ? "auto" : "given");
    if (a.automatic && !a.pitzerGaps.empty()) texts(w, "pitzerDataLack", a.pitzerGaps);
    number(w, "ionicStrengthMolPerKgw", a.ionicStrengthMolPerKgw);
    number(w, "waterActivity", std::pow(10.0, a.logWaterActivity));
    number(w, "log10WaterActivity", a.logWaterActivity);
    w.EndObject();
}

void components(Writer& w, const SpeciationCheck::Result& c, const ComponentNames& names,
                const AnalysisResult::Activities* activity) {
    key(w, "components");
    w.StartArray();
    for (const SpeciationCheck::Component& comp : c.components) {
        w.StartObject();
        text(w, "basis", comp.basis);
        text(w, "element", names.elementOfBasis(comp.basis));
        number(w, "totalMolPerKgw", comp.total);
        number(w, "speciesSumMolPerKgw", comp.sum);
        w.Key("closed");
        w.Bool(comp.closed);
        key(w, "species");
        w.StartArray();
        for (const SpeciationCheck::Species& s : comp.species) {
            w.StartObject();
            text(w, "name", s.name);
            number(w, "molalityMolPerKgw", s.molality);
            number(w, "coefficient", s.coefficient);
            number(w, "share", s.share);
            if (activity != nullptr) {
                const double logGamma = activity->logGamma(s.name);
                number(w, "log10ActivityCoefficient", logGamma);
                number(w, "log10Activity", logGamma + std::log10(s.molality));
            }
            w.EndObject();
        }
        w.EndArray();
        w.EndObject();
    }
    w.EndArray();
}

/// The lab's quantities: dissolved solids, alkalinity, and what a measured pH imposed.
void labQuantities(Writer& w, const AnalysisResult& r) {
    key(w, "dissolvedSolids");
    w.StartObject();
    number(w, "mgPerL", r.solids.mgPerL);
    number(w, "mgPerKg", r.solids.mgPerKg);
    w.EndObject();
    if (!r.calculated()) return;
    text(w, "pHSource", LabText::pHSource(r));
    number(w, "alkalinityEqPerKgw", r.alkalinityEqPerKgw);
    if (!r.constraints.pHFixed) return;
    key(w, "imposed");
    w.StartObject();
    if (r.analysis.alkalinityMeqPerL) number(w, "alkalinityMeqPerL", *r.analysis.alkalinityMeqPerL);
    if (r.constraints.alkalinityImposed) number(w, "derivedCarbonMolPerKgw", r.constraints.derivedCarbon);
    if (!r.constraints.balancedWith.empty()) {
        text(w, "balancedWith", r.constraints.balancedWith);
        number(w, "balanceAdjustmentMolPerKgw", r.constraints.balanceAdjustment);
        number(w, "balancedTotalMolPerKgw", r.constraints.balancedTotal);
    }
    w.EndObject();
}

/// With `names`, the whole result; without, the pH and status alone.
void analysis(Writer& w, const AnalysisResult& r, const ComponentNames* names) {
    const Analysis& a = r.analysis;
    w.StartObject();
    text(w, "name", a.name);
    text(w, "source", a.source);
    text(w, "status", ResultText::status(r.status));
    if (!r.error.empty()) text(w, "error", r.error);
    if (!r.hint.empty()) text(w, "hint", r.hint);
    number(w, "pH", r.calculated() ? r.pH : NAN);
    if (names != nullptr && r.status != AnalysisResult::Status::Invalid) {
        if (!a.description.empty()) text(w, "description", a.description);
        number(w, "temperatureK", a.temperatureK);
        number(w, "pressurePa", a.pressurePa);
        number(w, "densityGcm3", r.densityGcm3);
        text(w, "densitySource", ResultText::densitySource(r.densitySource));
        text(w, "unit", UnitNames::concentrationName(a.unit));
        chargeBalance(w, "chargeBalance", r.charge);
        if (r.balancing) {
            key(w, "balancing");
            w.StartObject();
            text(w, "element", r.balancing->element);
            number(w, "amount", r.balancing->amount);
            chargeBalance(w, "before", r.balancing->before);
            w.EndObject();
        }
        labQuantities(w, r);
        texts(w, "notes", a.notes);
        texts(w, "warnings", r.warnings);
        if (r.calculated()) {
            if (r.solver) solver(w, *r.solver);
            check(w, r.check);
            if (r.activities) activities(w, *r.activities);
            components(w, r.check, *names, r.activities ? &*r.activities : nullptr);
        }
    }
    w.EndObject();
}

void write(std::ostream& out, const std::vector<AnalysisResult>& results,
           const ComponentNames* names) {
    rapidjson::StringBuffer buffer;
    Writer w(buffer);
    w.SetIndent(' ', 2);
    w.StartObject();
    key(w, "analyses");
    w.StartArray();
    for (const AnalysisResult& r : results) analysis(w, r, names);
    w.EndArray();
    w.EndObject();
    out << buffer.GetString() << '\n';
}

}  // namespace

void JsonReport::writeSpeciation(std::ostream& out, const std::vector<AnalysisResult>& results,
                                 const ComponentNames& names) {
    write(out, results, &names);
}

void JsonReport::writePH(std::ostream& out, const std::vector<AnalysisResult>& results) {
    write(out, results, nullptr);
}

}  // namespace korvane::Brinecast::cli
