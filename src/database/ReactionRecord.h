#pragma once

#include "database/ReactionData.h"

#include <string>

namespace korvane {
namespace Brinecast {

/// A reaction and the species it forms. The loader leaves `name` empty; whoever picks the
/// reactions of a calculation sets it (a key of `data.stoich`) before log K values are formed.
struct ReactionRecord {
    std::string name;
    ReactionData data;
};

}  // namespace Brinecast
}  // namespace korvane
