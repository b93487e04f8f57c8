#include "brinecast/reports/HtmlPlotJson.h"

#include "brinecast/readers/Utf8Text.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace korvane::Brinecast::cli {
namespace {

using Writer = rapidjson::Writer<rapidjson::StringBuffer>;

void string(Writer& w, const std::string& value) {
    const std::string valid = Utf8Text::repaired(value);
    w.String(valid.c_str(), static_cast<rapidjson::SizeType>(valid.size()));
}

void text(Writer& w, const char* name, const std::string& value) {
    w.Key(name);
    string(w, value);
}

/// JSON has no NaN or infinity: the chart reads null as "no value here".
void number(Writer& w, double value) {
    if (std::isfinite(value)) {
        w.Double(value);
    } else {
        w.Null();
    }
}

/// Indices of the finite x values, in increasing x; equal x keep their order.
std::vector<std::size_t> pointOrder(const std::vector<double>& x) {
    std::vector<std::size_t> order(x.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    order.erase(std::remove_if(order.begin(), order.end(),
                               [&](std::size_t i) { return !std::isfinite(x[i]); }),
                order.end());
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return x[a] < x[b]; });
    return order;
}

void values(Writer& w, const char* name, const std::vector<double>& v,
            const std::vector<std::size_t>& order) {
    w.Key(name);
    w.StartArray();
    for (const std::size_t i : order) number(w, i < v.size() ? v[i] : std::numeric_limits<double>::quiet_NaN());
    w.EndArray();
}

}  // namespace

std::string HtmlPlotJson::write(const HtmlPlot& plot) {
    rapidjson::StringBuffer buffer;
    Writer w(buffer);
    const std::vector<std::size_t> order = pointOrder(plot.x);
    w.StartObject();
    text(w, "title", plot.title);
    text(w, "xLabel", plot.xLabel);
    text(w, "yLabel", plot.yLabel);
    w.Key("referenceY");
    number(w, plot.referenceY);
    values(w, "x", plot.x, order);
    w.Key("series");
    w.StartArray();
    for (const HtmlSeries& s : plot.series) {
        w.StartObject();
        text(w, "name", s.name);
        values(w, "y", s.y, order);
        w.EndObject();
    }
    w.EndArray();
    w.EndObject();
    return std::string(buffer.GetString(), buffer.GetSize());
}

}  // namespace korvane::Brinecast::cli
