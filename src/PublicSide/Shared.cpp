// The instances of this process: the logger and the entry point, and the services that they stand on.
#include <mutex>
#include <optional>
#include <utility>

#include "MirethVex/PublicSide/MirethSR.hpp"
#include "PrivateSide/Logger/MirethLog.hpp"
#include "PublicSide/MirethSRCore.hpp"

namespace mireth {

namespace {

bool isComplete(const platform::PlatformServices& services) {
    return services.mainQueue && services.background && services.clock && services.device &&
           services.application && services.information && services.userDefaults && services.http &&
           services.files && services.systemLog && services.assetWriters && services.graphics &&
           services.random && services.makePathMonitor;
}

/// What the shared instances are made of. Never destroyed: the host's other threads and static objects may
/// still log or call while the process ends.
struct Process {
    explicit Process(platform::PlatformServices services)
        : log(services.systemLog), entryPoint(std::make_unique<MirethSRCore>(log, std::move(services))) {}

    MirethLog log;
    MirethSR entryPoint;
};

struct Slot {
    std::mutex mutex;
    std::optional<platform::PlatformServices> installed;  // guarded by mutex
    Process* process = nullptr;                           // guarded by mutex, constant once set
};

Slot& slot() {
    static auto* const instance = new Slot;
    return *instance;
}

Process& process() {
    auto& place = slot();
    const std::lock_guard lock(place.mutex);
    if (place.process == nullptr) {
        place.process = new Process(place.installed ? std::move(*place.installed)
                                                    : platform::makeDefaultPlatformServices());
        place.installed.reset();
    }
    return *place.process;
}

}  // namespace

MirethLog& MirethLog::shared() {
    return process().log;
}

MirethSR& MirethSR::shared() noexcept {
    return process().entryPoint;
}

bool MirethSR::installPlatformServices(platform::PlatformServices services) noexcept {
    auto& place = slot();
    const std::lock_guard lock(place.mutex);
    if (place.process != nullptr || !isComplete(services)) {
        return false;
    }
    place.installed = std::move(services);
    return true;
}

}  // namespace mireth
