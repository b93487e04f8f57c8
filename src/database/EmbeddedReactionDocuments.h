#pragma once

#include <string>
#include <vector>

namespace korvane {
namespace Brinecast {

/// The reaction documents compiled into the library (src/database/data/reactions-1.json, then
/// reactions-2.json), as JSON text. Defined by a source file generated at build time.
std::vector<std::string> embeddedReactionDocuments();

}  // namespace Brinecast
}  // namespace korvane
