// The lines that long-lived objects write when they are built and when they go.
#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>

#include "PrivateSide/Collection/EventRecorder.hpp"
#include "PrivateSide/Configuration/DeviceDetector.hpp"
#include "PrivateSide/Ingestion/ChunkPusher.hpp"
#include "PrivateSide/Orchestrator/RemoteSessionManager.hpp"
#include "support/ApiPhone.hpp"

namespace mireth {
namespace {

using test::infoLine;

class MemoryUse : public testing::Test {
  protected:
    /// The lines of building and dropping what `make` makes; those of nothing else are shown.
    template <class Make>
    void expectLinesOf(const std::string& name, Make make) {
        phone.capture.log().setAllowedTags({LogTag::memoryUse});
        auto object = make();
        phone.capture.expectLines({infoLine(LogTag::memoryUse, name + ": Succesfully initialized")});
        object.reset();
        phone.capture.expectLines({infoLine(LogTag::memoryUse, name + ": Succesfully deinitialized")});
        phone.capture.log().reset();
    }

    std::shared_ptr<SessionDataDao> makeStore() {
        return makeStore(std::make_shared<EventBuffer>(phone.capture.log()));
    }
    std::shared_ptr<SessionDataDao> makeStore(const std::shared_ptr<EventBuffer>& buffer) {
        return std::make_shared<SessionDataDao>(
            phone.capture.log(), buffer, std::make_shared<PlaybackStorage>(phone.capture.log(), phone.files),
            [](Work work) { work(); });
    }

    test::ApiPhone phone;
};

TEST_F(MemoryUse, OfTheDeviceDetector) {
    expectLinesOf("DeviceDetector", [&] {
        return std::make_unique<DeviceDetector>(phone.capture.log(),
                                                std::make_shared<headless::HeadlessDevice>());
    });
}

TEST_F(MemoryUse, OfTheNetworkManager) {
    expectLinesOf("NetworkManager", [&] {
        return std::make_shared<NetworkManager>(phone.capture.log(), phone.http, phone.files, phone.random);
    });
}

TEST_F(MemoryUse, OfTheApiClient) {
    expectLinesOf("MApiClient", [&] { return phone.makeClient(); });
}

TEST_F(MemoryUse, OfTheSessionDataStore) {
    const auto buffer = std::make_shared<EventBuffer>(phone.capture.log());
    expectLinesOf("SessionDataDao", [&] { return makeStore(buffer); });
}

TEST_F(MemoryUse, OfTheEventBuffer) {
    expectLinesOf("EventBuffer", [&] { return std::make_unique<EventBuffer>(phone.capture.log()); });
}

TEST_F(MemoryUse, OfTheNetworkStateProvider) {
    expectLinesOf("NetworkStateProvider", [&] { return phone.makeNetworkState(); });
}

TEST_F(MemoryUse, OfTheRemoteLog) {
    expectLinesOf("RemoteLog", [&] { return phone.makeRemoteLog(); });
}

TEST_F(MemoryUse, OfTheEventRecorder) {
    const auto store = makeStore();
    expectLinesOf("EventRecorder", [&] {
        return std::make_unique<EventRecorder>(phone.capture.log(), store, TimelineTransformer({}),
                                               [] { return Date(0); });
    });
}

TEST_F(MemoryUse, OfTheChunkPusher) {
    const auto store = makeStore();
    const auto client = phone.makeClient();
    const auto network = phone.makeNetworkState();
    expectLinesOf("ChunkPusher", [&] {
        return std::make_shared<ChunkPusher>(phone.capture.log(), client, store, network,
                                             phone.phone.background);
    });
}

TEST_F(MemoryUse, OfTheRemoteSessionManager) {
    const auto client = phone.makeClient();
    const auto remoteLog = phone.makeRemoteLog();
    expectLinesOf("RemoteSessionManager", [&] {
        return std::make_shared<RemoteSessionManager>(phone.capture.log(), client, remoteLog,
                                                      [](double low, double) { return low; });
    });
}

TEST_F(MemoryUse, AreSilentUntilTheTagIsAllowed) {
    {
        const DeviceDetector detector(phone.capture.log(), std::make_shared<headless::HeadlessDevice>());
    }
    phone.capture.expectLines({});
}

}  // namespace
}  // namespace mireth
