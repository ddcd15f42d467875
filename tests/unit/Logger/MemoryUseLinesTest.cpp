// The lines that long-lived objects write when they are built and when they go.
#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>

#include "MirethVex/Headless/HeadlessApplication.hpp"
#include "PrivateSide/Collection/EventRecorder.hpp"
#include "PrivateSide/Configuration/DeviceDetector.hpp"
#include "PrivateSide/Detection/AppLifecycleObserver.hpp"
#include "PrivateSide/Detection/Metadata/MetadataDetector.hpp"
#include "PrivateSide/Detection/Navigation/AppearanceDetection.hpp"
#include "PrivateSide/Detection/Signals/SignalListeners/DeadTapListener.hpp"
#include "PrivateSide/Detection/WindowDimentions/WindowDimensionsDetector.hpp"
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

TEST_F(MemoryUse, OfTheLifecycleObserver) {
    const auto application = std::make_shared<headless::HeadlessApplication>();
    expectLinesOf("AppLifecycleObserver", [&] {
        return std::make_unique<AppLifecycleObserver>(phone.capture.log(), *application,
                                                      [] { return Date(0); });
    });
}

TEST_F(MemoryUse, OfTheMetadataDetector) {
    const auto device = std::make_shared<headless::HeadlessDevice>();
    expectLinesOf("MetadataDetector", [&] {
        return std::make_unique<MetadataDetector>(phone.capture.log(), phone.clientDetails, phone.information,
                                                  phone.information, device);
    });
}

TEST_F(MemoryUse, OfTheWindowDimensionsDetector) {
    expectLinesOf("WindowDimensionsDetector", [&] {
        return std::make_unique<WindowDimensionsDetector>(phone.capture.log(), DimensionConverter{1});
    });
}

TEST_F(MemoryUse, OfTheDeadTapListener) {
    const MirethGestureRecognizer recognizer(phone.capture.log(),
                                             std::make_shared<GestureRecognizerObserver>());
    const auto analyzer = std::make_shared<ViewAnalyzer>(phone.capture.log(), ViewContentComparator(nullptr),
                                                         LayerComparator(nullptr), phone.phone.mainQueue,
                                                         DevicePerformanceEvaluator(0));
    expectLinesOf("DeadTapListener", [&] {
        return std::make_unique<DeadTapListener>(phone.capture.log(), recognizer, analyzer);
    });
}

TEST_F(MemoryUse, OfTheAppearanceDetection) {
    const auto application = std::make_shared<headless::HeadlessApplication>();
    expectLinesOf("AppearanceDetection", [&] {
        return std::make_shared<AppearanceDetection>(
            phone.capture.log(), application,
            [](const std::vector<ScreenHierarchyElement>&, ScreenChangeType, ScreenDetectionType) {});
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
