#include "PrivateSide/Api/NetworkStateProvider.hpp"

#include <utility>

#include "Base/GuardedRun.hpp"

namespace mireth {

namespace {

NetworkType typeOf(const platform::NetworkPath& path) noexcept {
    if (path.usesWifi) {
        return NetworkType::wifi;
    }
    return path.usesCellular ? NetworkType::mobileData : NetworkType::unknown;
}

}  // namespace

std::string_view rawValue(NetworkType type) noexcept {
    switch (type) {
        case NetworkType::wifi:
            return "WIFI";
        case NetworkType::mobileData:
            return "MOBILE_DATA";
        case NetworkType::unknown:
            return "UNKNOWN";
    }
    return "";
}

NetworkStateProvider::NetworkStateProvider(MirethLog& log, std::unique_ptr<platform::PathMonitor> monitor,
                                           std::function<void(Work)> runInBackground)
    : runInBackground_(std::move(runInBackground)), memoryUse_(log, "PrivateSide/Api/NetworkStateProvider") {
    watch_->monitor = std::move(monitor);
    runInBackground_([watch = watch_, state = state_] {
        const std::lock_guard lock(watch->mutex);
        if (watch->monitor && !watch->isReleased) {
            watch->monitor->start([state](const platform::NetworkPath& path) { state->update(path); });
        }
    });
}

NetworkStateProvider::~NetworkStateProvider() {
    watch_->isReleased = true;
    // In the background: cancelling waits for the monitor's thread, and for its start if that is under way.
    // What is still reported until then reaches nobody.
    runGuarded("the background executor", [this] {
        runInBackground_([watch = watch_] {
            const std::lock_guard lock(watch->mutex);
            watch->monitor.reset();
        });
    });
}

void NetworkStateProvider::State::update(const platform::NetworkPath& path) noexcept {
    isConnected.store(path.satisfied, std::memory_order_relaxed);
    connectionType.store(typeOf(path), std::memory_order_relaxed);
}

}  // namespace mireth
