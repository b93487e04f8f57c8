#include "brinecast/reports/BalanceReport.h"

#include "brinecast/reports/NumberText.h"
#include "brinecast/readers/UnitNames.h"
#include "brinecast/readers/Utf8Text.h"

#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

#include <cmath>

namespace korvane::Brinecast::cli {

void BalanceReport::writeTable(std::ostream& out, const std::vector<Entry>& entries,
                               const std::string& element, const std::string& ion,
                               const std::string& file) {
    for (const Entry& e : entries) {
        const ChargeBalance& c = e.charge;
        out << (e.analysis.name.empty() ? e.analysis.source : e.analysis.name) << '\n'
            << "  Source          " << e.analysis.source << '\n'
            << "  Charge balance  net " << (c.net() > 0 ? "+" : "") << NumberText::significant(c.net(), 4)
            << ' ' << c.unitName() << ", " << NumberText::fixed(c.errorPercent(), 2)
            << " % of the total charge of " << NumberText::significant(c.total(), 4) << ' '
            << c.unitName() << (c.large() ? " (large: the pH would not be meaningful)" : "") << '\n'
            << "  To cancel it    ";
        if (!e.cannotCancel.empty()) {
            out << "not possible with " << element << ": the analysis holds less than the "
                << NumberText::significant(-e.amount, 6) << ' '
                << UnitNames::concentrationName(e.analysis.unit) << " to take away\n";
            continue;
        }
        out << (e.amount >= 0.0 ? "add " : "take away ") << NumberText::significant(std::abs(e.amount), 6)
            << ' ' << UnitNames::concentrationName(e.analysis.unit) << " of " << element << '\n';
        if (e.amount < 0.0) out << "                  (or add an ion of the other charge sign)\n";
        out << "  Apply it with   brinecast speciate " << file << " --balance-with " << ion << '\n';
    }
}

void BalanceReport::writeJson(std::ostream& out, const std::vector<Entry>& entries,
                              const std::string& element) {
    rapidjson::StringBuffer buffer;
    rapidjson::PrettyWriter<rapidjson::StringBuffer> w(buffer);
    w.SetIndent(' ', 2);
    auto text = [&](const char* key, const std::string& value) {
        w.Key(key);
        const std::string valid = Utf8Text::repaired(value);  // the report stays JSON
        w.String(valid.c_str(), static_cast<rapidjson::SizeType>(valid.size()));
    };
    auto number = [&](const char* key, double value) {
        w.Key(key);
        if (std::isfinite(value)) {
            w.Double(value);
        } else {
            w.Null();  // JSON has no infinity; a writer refusing one would leave half a file
        }
    };
    w.StartObject();
    w.Key("analyses");
    w.StartArray();
    for (const Entry& e : entries) {
        w.StartObject();
        text("name", e.analysis.name);
        text("source", e.analysis.source);
        number("netCharge", e.charge.net());
        number("totalCharge", e.charge.total());
        text("chargeUnit", e.charge.unitName());
        number("errorPercent", e.charge.errorPercent());
        text("element", element);
        number("amount", e.amount);
        w.Key("cancellable");
        w.Bool(e.cannotCancel.empty());
        text("unit", UnitNames::concentrationName(e.analysis.unit));
        w.EndObject();
    }
    w.EndArray();
    w.EndObject();
    out << buffer.GetString() << '\n';
}

}  // namespace korvane::Brinecast::cli
