#include "brinecast/calculation/SharedReactionData.h"

namespace korvane::Brinecast::cli {

const SharedReactionData& SharedReactionData::instance() {
    static const SharedReactionData data;
    return data;
}

}  // namespace korvane::Brinecast::cli
