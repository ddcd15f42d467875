#include "platforms/linux/media/TrackInput.hpp"

#include <utility>

namespace mireth::platform {

TrackInput::TrackInput(std::weak_ptr<WriterCore> core, const TrackSize& size)
    : core_(std::move(core)), size_(size), readiness_(std::make_shared<ReadinessSignal>()) {}

bool TrackInput::isReadyForMoreMediaData() const {
    return readiness_->isReady();
}

void TrackInput::requestMediaDataWhenReady(std::function<void(Work)> post, std::function<void()> callback) {
    readiness_->request(std::move(post), std::move(callback));
}

void TrackInput::markAsFinished() {
    readiness_->finish();
}

bool TrackInput::belongsTo(const std::shared_ptr<WriterCore>& core) const {
    return core_.lock() == core;
}

TrackAdaptor::TrackAdaptor(std::weak_ptr<WriterCore> core, std::shared_ptr<TrackInput> input)
    : core_(std::move(core)), input_(std::move(input)) {}

std::shared_ptr<PixelBufferPool> TrackAdaptor::pixelBufferPool() const {
    const auto core = core_.lock();
    return core != nullptr ? core->pool() : nullptr;
}

bool TrackAdaptor::append(std::shared_ptr<PixelBuffer> buffer, MediaTime presentationTime) {
    const auto core = core_.lock();
    if (core == nullptr || buffer == nullptr || !input_->isReadyForMoreMediaData()) {
        return false;
    }
    return core->append(*buffer, presentationTime);
}

}  // namespace mireth::platform
