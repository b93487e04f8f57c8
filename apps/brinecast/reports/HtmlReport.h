#pragma once

#include "brinecast/reports/HtmlDocument.h"

#include <string>

namespace korvane::Brinecast::cli {

/// Writes an HtmlDocument as one self-contained HTML page.
class HtmlReport {
public:
    static std::string render(const HtmlDocument& document);
};

}  // namespace korvane::Brinecast::cli
