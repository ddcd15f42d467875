// A whole scripted phone: the services to install, and the handles to drive it.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "MirethVex/Headless/CapturedSystemLog.hpp"
#include "MirethVex/Headless/HeadlessApplication.hpp"
#include "MirethVex/Headless/HeadlessClock.hpp"
#include "MirethVex/Headless/HeadlessDevice.hpp"
#include "MirethVex/Headless/HeadlessNetwork.hpp"
#include "MirethVex/Headless/MemoryStores.hpp"
#include "MirethVex/Headless/ServiceHttpClient.hpp"
#include "MirethVex/Headless/VirtualMainQueue.hpp"
#include "MirethVex/Platform/PlatformServices.hpp"

namespace mireth::headless {

struct HeadlessOptions {
    /// Time. Seconds of the script in a real second; nothing: virtual time, and every run is the same.
    std::optional<double> pace = std::nullopt;
    /// Time. What the clocks read at the beginning.
    std::int64_t epochMillis = 1'700'000'000'000;
    double uptimeSeconds = 1000;

    /// Chance. Of every draw and identifier.
    std::uint64_t seed = 0;

    /// The device and what it knows.
    DeviceValues device{};
    TextByKey information{{"CFBundleShortVersionString", "2.3.1"}, {"VEX_VERSION", "1.0.0"}};
    TextByKey userDefaults;
    platform::NetworkPath network{.satisfied = true, .usesWifi = true};

    /// Real parts, none of them null.
    std::shared_ptr<platform::FileManager> files = nullptr;
    std::shared_ptr<platform::AssetWriterFactory> assetWriters = nullptr;
    std::shared_ptr<platform::Graphics> graphics = nullptr;
    /// With a pace: where background work runs. Virtual time runs it on the loop and needs none.
    std::shared_ptr<platform::BackgroundExecutor> threads = nullptr;
    /// Null: an in-memory service, see `service()`.
    std::shared_ptr<platform::HttpClient> http = nullptr;
};

/// Made, driven and destroyed on the main thread. Its destructor drops all that is posted, due or in flight,
/// and the services do nothing from then on.
class HeadlessPlatform {
  public:
    explicit HeadlessPlatform(HeadlessOptions options);
    HeadlessPlatform(const HeadlessPlatform&) = delete;
    HeadlessPlatform& operator=(const HeadlessPlatform&) = delete;
    ~HeadlessPlatform();

    const platform::PlatformServices& services() const noexcept { return services_; }

    VirtualMainQueue& queue() const noexcept { return *queue_; }
    const std::shared_ptr<VirtualMainQueue>& sharedQueue() const noexcept { return queue_; }
    HeadlessClock& clock() const noexcept { return *clock_; }
    HeadlessApplication& application() const noexcept { return *application_; }
    HeadlessNetwork& network() const noexcept { return *network_; }
    MemoryKeyValueStore& userDefaults() const noexcept { return *userDefaults_; }
    CapturedSystemLog& systemLog() const noexcept { return *systemLog_; }
    /// The in-memory service that answers requests; null when the options named a client.
    ServiceHttpClient* service() const noexcept { return service_.get(); }

  private:
    std::shared_ptr<platform::HttpClient> makeHttp(std::shared_ptr<platform::HttpClient> given);

    const std::shared_ptr<VirtualMainQueue> queue_;
    const std::shared_ptr<platform::BackgroundExecutor> background_;
    const std::shared_ptr<HeadlessClock> clock_;
    const std::shared_ptr<HeadlessApplication> application_;
    const std::shared_ptr<HeadlessNetwork> network_;
    const std::shared_ptr<MemoryKeyValueStore> userDefaults_;
    const std::shared_ptr<CapturedSystemLog> systemLog_;
    std::shared_ptr<ServiceHttpClient> service_;
    platform::PlatformServices services_;
};

}  // namespace mireth::headless
