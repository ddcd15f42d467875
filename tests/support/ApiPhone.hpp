// The network side on a phone driven by hand: requests go to the test, log lines are accounted for.
#pragma once

#include <gtest/gtest.h>

#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "MirethVex/Headless/HeadlessDevice.hpp"
#include "MirethVex/Headless/MemoryStores.hpp"
#include "PrivateSide/Api/MApiClient.hpp"
#include "PrivateSide/Logger/RemoteLog.hpp"
#include "support/AsyncPhone.hpp"
#include "support/FakeHttpClient.hpp"
#include "support/FakePathMonitor.hpp"
#include "support/FixedRandomSource.hpp"
#include "support/LogCapture.hpp"
#include "support/MemoryFileManager.hpp"

namespace mireth::test {

/// Everything runs on the test's thread. Info lines are captured only for the tags that are allowed.
class ApiPhone {
  public:
    static headless::TextByKey defaultInformation() {
        return {{"SR_ENDPOINT_URL", "https://sr.test"},
                {"KELDA_ENDPOINT_URL", "https://kelda.test"},
                {"VEX_VERSION", "1.2.3"}};
    }

    explicit ApiPhone(headless::TextByKey informationValues = defaultInformation(),
                      headless::TextByKey userDefaults = {}, std::set<LogTag> allowedTags = {})
        : capture(std::move(allowedTags)),
          information(std::make_shared<headless::MemoryInformationDictionary>(std::move(informationValues))),
          clientDetails(std::make_shared<const ClientDetailsProvider>(
              std::make_shared<headless::MemoryKeyValueStore>(std::move(userDefaults)))) {}

    ~ApiPhone() {
        capture.expectLines({});
        // What is still held ends now; its lines are the test's no more.
        http->dropHeld();
        phone.runUntilIdle();
        (void)capture.take();
    }
    ApiPhone(const ApiPhone&) = delete;
    ApiPhone& operator=(const ApiPhone&) = delete;

    std::shared_ptr<MApiClient> makeClient(std::string brandId = "b1", std::string projectId = "p1") {
        MApiClient::Environment environment;
        environment.network = network;
        environment.information = information;
        environment.clientDetails = clientDetails;
        environment.systemVersion = "17.4";
        environment.background = phone.background;
        return std::make_shared<MApiClient>(capture.log(), std::move(brandId), std::move(projectId),
                                            std::move(environment));
    }

    std::shared_ptr<RemoteLog> makeRemoteLog(headless::DeviceValues device = {}) {
        RemoteLog::Environment environment;
        environment.information = information;
        environment.device = std::make_shared<headless::HeadlessDevice>(std::move(device));
        environment.clientDetails = clientDetails;
        environment.random = random;
        environment.background = phone.background;
        auto remoteLog = std::make_shared<RemoteLog>(capture.log(), std::move(environment));
        remoteLog->askServices();
        return remoteLog;
    }

    std::shared_ptr<NetworkStateProvider> makeNetworkState() {
        return std::make_shared<NetworkStateProvider>(capture.log(), std::make_unique<FakePathMonitor>(path),
                                                      [](Work work) { work(); });
    }

    /// A client that knows its data centre already.
    std::shared_ptr<MApiClient> makeConfiguredClient(const std::string& dataCenter = "US_WEST") {
        auto client = makeClient();
        http->answerAll(FakeHttpClient::response(200, configurationBody(dataCenter)));
        EXPECT_TRUE(await(client->getSrConfiguration()).has_value());
        (void)capture.take();
        http->holdAll();
        return client;
    }

    static std::string configurationBody(const std::string& dataCenter) {
        return R"({"srEnabled":"SR_ENABLED_FOR_MOBILE_ONLY","dataCenter":")" + dataCenter +
               R"(","samplingRate":100,"customSignal":[]})";
    }

    /// Starts `task`; the result is there once it has ended.
    template <class T>
    std::shared_ptr<std::optional<T>> start(Task<T> task) const {
        auto result = std::make_shared<std::optional<T>>();
        asio::co_spawn(phone.main, std::move(task), [result](const std::exception_ptr& exception, T value) {
            EXPECT_EQ(exception, nullptr) << "a task threw";
            *result = std::move(value);
        });
        return result;
    }

    /// Runs `task` to its end.
    template <class T>
    T await(Task<T> task) const {
        const auto result = start(std::move(task));
        phone.runUntilIdle();
        EXPECT_TRUE(result->has_value()) << "the task has not ended";
        return std::move(result->value());
    }

    /// The request sent last.
    platform::HttpRequest lastRequest() const {
        const auto all = http->requests();
        EXPECT_FALSE(all.empty());
        return all.empty() ? platform::HttpRequest{} : all.back();
    }

    LogCapture capture;
    AsyncPhone phone;
    std::shared_ptr<headless::MemoryInformationDictionary> information;
    std::shared_ptr<const ClientDetailsProvider> clientDetails;
    std::shared_ptr<FakeHttpClient> http = std::make_shared<FakeHttpClient>(phone.backgroundExecutor);
    std::shared_ptr<tests::MemoryFileManager> files = std::make_shared<tests::MemoryFileManager>();
    std::shared_ptr<FixedRandomSource> random = std::make_shared<FixedRandomSource>();
    std::shared_ptr<PathScript> path = std::make_shared<PathScript>();
    std::shared_ptr<NetworkManager> network =
        std::make_shared<NetworkManager>(capture.log(), http, files, random);
};

inline std::optional<std::string> headerOf(const platform::HttpRequest& request, std::string_view name) {
    for (const auto& [key, value] : request.headers) {
        if (key == name) {
            return value;
        }
    }
    return std::nullopt;
}

}  // namespace mireth::test
