#pragma once

#include <string>
#include <vector>

namespace korvane {
namespace Brinecast {

/// The mineral data compiled into the library (src/minerals/data/minerals.json), as JSON text.
/// Defined by a source file generated at build time.
std::vector<std::string> embeddedMineralDocuments();

}  // namespace Brinecast
}  // namespace korvane
