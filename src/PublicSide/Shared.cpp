// The instances of this process: the logger and the entry point, and the services that they stand on.
#include <mutex>
#include <optional>
#include <string_view>
#include <utility>

#include "Base/GuardedRun.hpp"
#include "MirethVex/PublicSide/MirethSR.hpp"
#include "PrivateSide/Logger/MirethLog.hpp"
#include "PublicSide/MirethSRAccess.hpp"
#include "PublicSide/MirethSRCore.hpp"

namespace mireth {

namespace {

bool isComplete(const platform::PlatformServices& services) {
    return services.mainQueue && services.background && services.clock && services.device &&
           services.application && services.information && services.userDefaults && services.http &&
           services.files && services.systemLog && services.assetWriters && services.graphics &&
           services.random && services.makePathMonitor;
}

/// The system log and what it has answered, so that the instances are made without asking the host.
class AnsweredSystemLog final : public platform::SystemLog {
  public:
    AnsweredSystemLog(std::shared_ptr<platform::SystemLog> log, bool isStructured)
        : log_(std::move(log)), isStructured_(isStructured) {}

    bool hasStructuredLog() const override { return isStructured_; }
    void writeStructured(std::string_view subsystem, std::string_view category, platform::SystemLogType type,
                         std::string_view message) override {
        log_->writeStructured(subsystem, category, type, message);
    }
    void writeLegacy(std::string_view subsystem, std::string_view category, platform::SystemLogType type,
                     std::string_view message) override {
        log_->writeLegacy(subsystem, category, type, message);
    }

  private:
    const std::shared_ptr<platform::SystemLog> log_;
    const bool isStructured_;
};

/// The system log of `services` after it was asked. One that calls the library while it is asked counts as
/// unstructured.
std::shared_ptr<platform::SystemLog> askedSystemLog(const platform::PlatformServices& services) {
    thread_local bool isAsking = false;
    bool isStructured = false;
    if (!std::exchange(isAsking, true)) {
        runGuarded("the system log", [&] { isStructured = services.systemLog->hasStructuredLog(); });
        isAsking = false;
    }
    return std::make_shared<AnsweredSystemLog>(services.systemLog, isStructured);
}

/// What the shared instances are made of. Never destroyed: the host's other threads and static objects may
/// still log or call while the process ends.
struct Process {
    Process(const std::shared_ptr<platform::SystemLog>& systemLog, platform::PlatformServices services)
        : log(systemLog),
          entryPoint(MirethSRAccess::make(std::make_unique<MirethSRCore>(log, std::move(services)))) {}

    MirethLog log;
    MirethSR entryPoint;
};

/// No service is called under its mutex: it may call the library.
struct Slot {
    std::mutex mutex;
    std::optional<platform::PlatformServices> services;  // guarded by mutex, constant once taken
    bool areTaken = false;                               // guarded by mutex
    Process* process = nullptr;                          // guarded by mutex, constant once set
};

Slot& slot() {
    static auto* const instance = new Slot;
    return *instance;
}

Process& makeProcess(Slot& place, platform::PlatformServices services) {
    const auto systemLog = askedSystemLog(services);
    Process* made = nullptr;
    {
        const std::lock_guard lock(place.mutex);
        if (place.process != nullptr) {
            // Made meanwhile: by another thread, or by a service that was asked.
            return *place.process;
        }
        made = place.process = new Process(systemLog, std::move(services));
        place.services.reset();
    }
    // Now that a service that calls the library finds it made.
    runGuarded("a service of the platform", [made] { MirethSRAccess::core(made->entryPoint).askServices(); });
    return *made;
}

Process& process() {
    auto& place = slot();
    std::optional<platform::PlatformServices> services;
    {
        const std::lock_guard lock(place.mutex);
        if (place.process != nullptr) {
            return *place.process;
        }
        place.areTaken = true;
        services = place.services;
    }
    return makeProcess(place, services ? std::move(*services) : platform::makeDefaultPlatformServices());
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
    // Outlive the lock: their destructors are the host's, and may ask for the library.
    std::optional<platform::PlatformServices> replaced(std::move(services));
    const std::lock_guard lock(place.mutex);
    if (place.areTaken || !isComplete(*replaced)) {
        return false;
    }
    place.services.swap(replaced);
    return true;
}

}  // namespace mireth
