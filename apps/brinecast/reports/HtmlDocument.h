#pragma once
/// What an HTML report shows, independent of how it is drawn: the page is made of sections, each
/// with facts (label and value), tables of text cells and plots of series against one x axis.

#include <string>
#include <utility>
#include <vector>

namespace korvane::Brinecast::cli {

/// A table of text cells; `numeric[i]` right-aligns column i.
struct HtmlTable {
    std::string caption;
    std::vector<std::string> header;
    std::vector<bool> numeric;
    std::vector<std::vector<std::string>> rows;
};

/// One line of a plot: its y value at each x of the plot; NaN where it has none (a gap).
struct HtmlSeries {
    std::string name;
    std::vector<double> y;
};

/// Series drawn against a shared x axis, e.g. saturation index against mixing fraction.
struct HtmlPlot {
    std::string title;
    std::string xLabel;
    std::string yLabel;
    std::vector<double> x;
    std::vector<HtmlSeries> series;
    /// A horizontal reference line (e.g. SI = 0, saturation); none when NaN.
    double referenceY = 0.0;
};

struct HtmlSection {
    std::string heading;
    std::vector<std::pair<std::string, std::string>> facts;
    std::vector<HtmlTable> tables;
    std::vector<HtmlPlot> plots;
};

struct HtmlDocument {
    std::string title;
    std::vector<HtmlSection> sections;
};

}  // namespace korvane::Brinecast::cli
