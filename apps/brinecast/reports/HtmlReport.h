#pragma once

#include "brinecast/reports/HtmlDocument.h"

#include <string>

namespace korvane::Brinecast::cli {

/// A report as one self-contained HTML5 page: the charting library, its style and the page's own
/// script are inlined, and a content security policy forbids every fetch, so the page reads the
/// same offline as online. Every text is escaped and every number travels as JSON, so hostile
/// names (markup, quotes, invalid UTF-8) show as text and the page stays valid UTF-8.
class HtmlReport {
public:
    static std::string render(const HtmlDocument& document);
};

}  // namespace korvane::Brinecast::cli
