#pragma once

#include <string>
#include <vector>

namespace korvane {
namespace Brinecast {

/// The Pitzer data compiled into the library (src/activity/pitzer/data/pitzer.json), as JSON
/// text. Defined by a source file generated at build time.
std::vector<std::string> embeddedPitzerDocuments();

}  // namespace Brinecast
}  // namespace korvane
