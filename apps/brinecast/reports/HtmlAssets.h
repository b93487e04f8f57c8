#pragma once
/// The texts an HTML report inlines, compiled in at build time from web/.

#include <cstddef>
#include <string>
#include <vector>

namespace korvane::Brinecast::cli {

/// The positions of the texts that `htmlAssets()` returns.
enum HtmlAsset : std::size_t {
    UplotScript = 0,
    UplotStyle,
    UplotLicense,
    ReportScript,
    ReportStyle,
};

/// uPlot's script, style and licence, then the report's own script and style, in HtmlAsset order.
std::vector<std::string> htmlAssets();

}  // namespace korvane::Brinecast::cli
