#include <korvane/Speciator.h>

#include "interface/BatchSpeciation.h"
#include "interface/SpeciationMethods.h"
#include "interface/SpeciatorData.h"

#include <utility>

namespace korvane {
namespace Brinecast {

Speciator::Speciator() : data_(std::make_shared<const Data>()) {}
Speciator::Speciator(const Speciator& other) = default;
Speciator::Speciator(Speciator&& other) noexcept = default;
Speciator& Speciator::operator=(const Speciator& other) = default;
Speciator& Speciator::operator=(Speciator&& other) noexcept = default;
Speciator::~Speciator() = default;

Result Speciator::speciate(const Input& input, const SolveOptions& options) const {
    return speciateWith(input, data_->model, data_->index, options);
}

std::vector<BatchItem> Speciator::speciateBatch(const std::vector<Input>& inputs, const SolveOptions& options,
                                                unsigned threads) const {
    const Data& data = *data_;
    return Brinecast::speciateBatch(inputs, threads, [&data, &options](const Input& input) {
        return speciateWith(input, data.model, data.index, options);
    });
}

Result speciate(Input input, const SolveOptions& options) { return Speciator().speciate(input, options); }

}  // namespace Brinecast
}  // namespace korvane
