#include <korvane/Speciator.h>

#include "database/SpeciesModel.h"
#include "interface/BatchSpeciation.h"
#include "interface/SpeciationMethods.h"
#include "solver/ReactionIndex.h"

#include <stdexcept>
#include <string>
#include <utility>

namespace korvane {
namespace Brinecast {

/// The parsed reaction data and its index, shared read-only by every calculation.
class Speciator::Data {
public:
    Data() : index(model.reactions) {}
    const SpeciesModel model;
    const ReactionIndex index;
};

Speciator::Speciator() : data_(std::make_shared<const Data>()) {}
Speciator::Speciator(const Speciator& other) = default;
Speciator::Speciator(Speciator&& other) noexcept = default;
Speciator& Speciator::operator=(const Speciator& other) = default;
Speciator& Speciator::operator=(Speciator&& other) noexcept = default;
Speciator::~Speciator() = default;

Result Speciator::speciate(const Input& input, const SolveOptions& options) const {
    return speciateWith(input, data_->model, data_->index, options);
}

Result Speciator::speciate(const Input& input, const Constraints& constraints, const SolveOptions& options) const {
    return speciateWith(input, constraints, data_->model, data_->index, options);
}

std::vector<BatchItem> Speciator::speciateBatch(const std::vector<Input>& inputs, const SolveOptions& options,
                                                unsigned threads) const {
    const Data& data = *data_;
    return Brinecast::speciateBatch(inputs, threads, [&data, &options](const Input& input) {
        return speciateWith(input, data.model, data.index, options);
    });
}

std::vector<BatchItem> Speciator::speciateBatch(const std::vector<Input>& inputs,
                                                const std::vector<Constraints>& constraints,
                                                const SolveOptions& options, unsigned threads) const {
    if (inputs.size() != constraints.size()) {
        throw std::invalid_argument("speciateBatch has " + std::to_string(inputs.size()) + " inputs and " +
                                    std::to_string(constraints.size()) +
                                    " constraints; give one Constraints per input, in the same order.");
    }
    const Data& data = *data_;
    // Each input finds its constraints by its place in the list.
    const Input* first = inputs.data();
    return Brinecast::speciateBatch(inputs, threads, [&data, &options, &constraints, first](const Input& input) {
        return speciateWith(input, constraints[static_cast<std::size_t>(&input - first)], data.model, data.index,
                            options);
    });
}

Result speciate(Input input, const SolveOptions& options) { return Speciator().speciate(input, options); }

Result speciate(Input input, const Constraints& constraints, const SolveOptions& options) {
    return Speciator().speciate(input, constraints, options);
}

}  // namespace Brinecast
}  // namespace korvane
