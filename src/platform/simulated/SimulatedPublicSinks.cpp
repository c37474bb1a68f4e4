#include "platform/simulated/SimulatedPublicSinks.h"

#include "platform/simulated/SoundGraph.h"

namespace velmora {

SimulatedPublicSinks::SimulatedPublicSinks(SimulatedSound& sound) : graph_(sound.graph_) {
}

StatusOr<AudioObjectID> SimulatedPublicSinks::create(const PublicSink& sink) {
    const std::scoped_lock guard(graph_->mutex);
    if (const auto refusal = graph_->refusals.find(Operation::createSink)) {
        return std::unexpected(*refusal);
    }
    if (!graph_->isAvailable || graph_->deviceByUID(sink.masterUID) == nullptr ||
        graph_->deviceByUID(sink.followerUID) == nullptr) {
        return std::unexpected(statusNoSuchObject);
    }
    if (graph_->deviceByUID(sink.uid) != nullptr) {
        return std::unexpected(statusExists);
    }
    return graph_->makeSink(sink);
}

Status SimulatedPublicSinks::remove(AudioObjectID sink) {
    const std::scoped_lock guard(graph_->mutex);
    if (const auto refusal = graph_->refusals.find(Operation::removeSink, sink)) {
        return *refusal;
    }
    return graph_->removeSink(sink) ? statusOk : statusNoSuchObject;
}

} // namespace velmora
