// The rules of the services that hand out values: clocks, device, chance, texts, application, path, log.
#pragma once

#include <optional>

#include "MirethVex/Platform/AppearanceDelivery.hpp"
#include "MirethVex/Platform/Application.hpp"
#include "MirethVex/Platform/Clock.hpp"
#include "MirethVex/Platform/Device.hpp"
#include "MirethVex/Platform/InformationDictionary.hpp"
#include "MirethVex/Platform/KeyValueStore.hpp"
#include "MirethVex/Platform/PathMonitor.hpp"
#include "MirethVex/Platform/RandomSource.hpp"
#include "MirethVex/Platform/SystemLog.hpp"
#include "MirethVex/Platform/Window.hpp"
#include "TestSupport.hpp"

namespace mireth::test {

/// Some services need nothing but being made.
template <class Service>
class ServiceHarness {
  public:
    explicit ServiceHarness(std::shared_ptr<Service> service) : service_(std::move(service)) {}
    Service& service() { return *service_; }

  private:
    std::shared_ptr<Service> service_;
};

/// The implementation whose service `make` makes.
template <class Service>
Implementation<ServiceHarness<Service>> serviceImplementation(
    std::string name, std::function<std::shared_ptr<Service>()> make) {
    return {std::move(name),
            [make = std::move(make)] { return std::make_unique<ServiceHarness<Service>>(make()); }};
}

using ClockContract = ContractTest<ServiceHarness<platform::Clock>>;
using DeviceContract = ContractTest<ServiceHarness<platform::Device>>;
using RandomSourceContract = ContractTest<ServiceHarness<platform::RandomSource>>;
using SystemLogContract = ContractTest<ServiceHarness<platform::SystemLog>>;

/// Holds the texts "name" = "bridge" and "empty" = "", and under "number" the number 7 where the store knows
/// other values than texts.
class TextsHarness {
  public:
    virtual ~TextsHarness() = default;
    virtual std::optional<std::string> string(std::string_view key) = 0;
};
using TextsContract = ContractTest<TextsHarness>;

class KeyValueStoreHarness {
  public:
    virtual ~KeyValueStoreHarness() = default;
    virtual platform::KeyValueStore& store() = 0;
    /// Another process sets the only value there is.
    virtual void setFromOutside(const std::string& key, const std::string& value) = 0;
    /// Makes the next `synchronize` fail.
    virtual void breakStore() = 0;
};
using KeyValueStoreContract = ContractTest<KeyValueStoreHarness>;

class ApplicationHarness {
  public:
    virtual ~ApplicationHarness() = default;
    virtual platform::Application& application() = 0;
    /// What the application's toolkit calls when screens come and go.
    virtual const platform::AppearanceDelivery& appearance() = 0;
    virtual void setKeyWindow(std::shared_ptr<platform::Window> window) = 0;
    virtual void moveToBackground() = 0;
};
using ApplicationContract = ContractTest<ApplicationHarness>;

class PathMonitorHarness {
  public:
    virtual ~PathMonitorHarness() = default;
    virtual std::unique_ptr<platform::PathMonitor> makeMonitor() = 0;
};
using PathMonitorContract = ContractTest<PathMonitorHarness>;

}  // namespace mireth::test
