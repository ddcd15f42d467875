// The path that all monitors of one script watch.
#include "MirethVex/Headless/HeadlessNetwork.hpp"

#include <utility>

#include "HeadlessPathMonitor.hpp"

namespace mireth::headless {

HeadlessNetwork::HeadlessNetwork(std::shared_ptr<platform::BackgroundExecutor> background,
                                 platform::NetworkPath path)
    : background_(std::move(background)), path_(path) {}

void HeadlessNetwork::setPath(const platform::NetworkPath& path) {
    if (path != path_.value()) {
        path_ = path;
    }
}

std::unique_ptr<platform::PathMonitor> HeadlessNetwork::makeMonitor() const {
    return std::make_unique<HeadlessPathMonitor>(path_.eraseToAnyPublisher(), background_);
}

}  // namespace mireth::headless
