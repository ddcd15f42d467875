// Whether there is a network path now, and of which kind.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string_view>

#include "MirethVex/Base/Work.hpp"
#include "MirethVex/Platform/PathMonitor.hpp"
#include "PrivateSide/Logger/MemoryUseLines.hpp"
#include "PrivateSide/Logger/MirethLog.hpp"

namespace mireth {

enum class NetworkType { wifi, mobileData, unknown };

/// "WIFI", "MOBILE_DATA" or "UNKNOWN".
std::string_view rawValue(NetworkType type) noexcept;

/// Follows a path monitor and keeps its last answer, so that asking costs nothing. Before the first answer
/// there is no connection. Any thread.
class NetworkStateProvider {
  public:
    /// Starts the monitor through `runInBackground`, so that construction returns at once.
    NetworkStateProvider(MirethLog& log, std::unique_ptr<platform::PathMonitor> monitor,
                         std::function<void(Work)> runInBackground);
    ~NetworkStateProvider();
    NetworkStateProvider(const NetworkStateProvider&) = delete;
    NetworkStateProvider& operator=(const NetworkStateProvider&) = delete;

    bool hasConnection() const noexcept { return state_->isConnected.load(std::memory_order_relaxed); }
    NetworkType getConnectionType() const noexcept {
        return state_->connectionType.load(std::memory_order_relaxed);
    }

  private:
    struct State {
        std::atomic<bool> isConnected{false};
        std::atomic<NetworkType> connectionType{NetworkType::unknown};
        void update(const platform::NetworkPath& path) noexcept;
    };

    /// Shared with the task that starts the monitor.
    struct Watch {
        std::mutex mutex;
        std::unique_ptr<platform::PathMonitor> monitor;  // guarded by mutex; null once it is cancelled
        std::atomic<bool> isReleased{false};             // a monitor not started by then never starts
    };

    const std::shared_ptr<State> state_ = std::make_shared<State>();
    const std::function<void(Work)> runInBackground_;
    const MemoryUseLines memoryUse_;
    const std::shared_ptr<Watch> watch_ = std::make_shared<Watch>();
};

}  // namespace mireth
