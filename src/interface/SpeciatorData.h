#pragma once

#include "database/SpeciesModel.h"
#include "solver/ReactionIndex.h"

#include <korvane/Speciator.h>

namespace korvane {
namespace Brinecast {

/// The parsed reaction data and its index, shared read-only by every calculation.
class Speciator::Data {
public:
    Data() : index(model.reactions) {}
    const SpeciesModel model;
    const ReactionIndex index;
};

}  // namespace Brinecast
}  // namespace korvane
