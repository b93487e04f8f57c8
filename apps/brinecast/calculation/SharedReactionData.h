#pragma once

#include "database/SpeciesModel.h"
#include "solver/ReactionIndex.h"

namespace korvane::Brinecast::cli {

/// The embedded reaction data parsed once for the whole program and only read after that, so
/// that every thread checks results and computes densities against the model the library
/// calculates with, without parsing it per analysis.
class SharedReactionData {
public:
    static const SpeciesModel& model() { return instance().model_; }
    static const ReactionIndex& index() { return instance().index_; }

private:
    SharedReactionData() : index_(model_.reactions) {}
    static const SharedReactionData& instance();

    const SpeciesModel model_;
    const ReactionIndex index_;
};

}  // namespace korvane::Brinecast::cli
