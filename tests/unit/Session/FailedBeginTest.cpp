// A session that is created and cannot begin, because a service of the phone throws.
#include <gmock/gmock.h>

#include <stdexcept>

#include "MirethVex/Headless/HeadlessDevice.hpp"
#include "support/SessionHost.hpp"

namespace mireth {
namespace {

using test::IngestionFake;
using test::SessionHost;
using testing::ElementsAre;
using testing::IsEmpty;

/// A device whose model cannot be had while it is out of order; the session's metadata name it.
class Flaky final : public platform::Device {
  public:
    explicit Flaky(std::shared_ptr<platform::Device> device) : device_(std::move(device)) {}
    platform::UserInterfaceIdiom userInterfaceIdiom() const override { return device_->userInterfaceIdiom(); }
    std::string model() const override {
        if (isOutOfOrder) {
            throw std::runtime_error("no model");
        }
        return device_->model();
    }
    std::string name() const override { return device_->name(); }
    std::string systemVersion() const override { return device_->systemVersion(); }
    std::string machine() const override { return device_->machine(); }
    std::optional<std::string> identifierForVendor() const override { return device_->identifierForVendor(); }
    std::uint64_t physicalMemory() const override { return device_->physicalMemory(); }

    bool isOutOfOrder = true;

  private:
    const std::shared_ptr<platform::Device> device_;
};

struct FailedBegin : testing::Test {
    std::shared_ptr<Flaky> device;
    SessionHost host{{}, {}, [this](platform::PlatformServices& services) {
                         device = std::make_shared<Flaky>(services.device);
                         services.device = device;
                     }};

    void SetUp() override { ASSERT_EQ(host.initialize(), InitializationResult::success); }
    void expectLine() {
        host.capture.expectLines(
            {test::errorLine(LogTag::lifecycle, "Failed to start recording. [\"reason\": \"no model\"]")});
    }
};

TEST_F(FailedBegin, ClosesTheSessionAndLeavesNothingRunning) {
    EXPECT_EQ(host.start(), SessionStartResult::fail("Failed to start recording: no model"));
    expectLine();
    EXPECT_EQ(host.state(), "stopped");
    EXPECT_THAT(host.service.calls, ElementsAre("configuration", "create", "close"));
    host.phone().application().moveToBackground();
    host.advance(30);
    EXPECT_THAT(host.window->gestureRecognizers(), IsEmpty());
    EXPECT_EQ(host.service.calls.size(), 3U);
    host.capture.expectLines({});
}

TEST_F(FailedBegin, AnotherStartMaySucceed) {
    EXPECT_EQ(host.start().kind, SessionStartResult::Kind::fail);
    expectLine();
    device->isOutOfOrder = false;
    EXPECT_EQ(host.start(),
              SessionStartResult::success("Successfully created session: S2", {"S2", 1700000000000}));
    host.advance(10);
    ASSERT_EQ(host.service.chunks.size(), 1U);
    EXPECT_EQ(host.service.chunks[0].info["sessionId"], "S2");
    EXPECT_EQ(host.service.chunks[0].timeline[0]["type"], "SessionStartMarker");
    EXPECT_EQ(host.service.chunks[0].timeline[1]["type"], "MetadataCaptured");
}

TEST_F(FailedBegin, AStartWhileTheServiceIsToldOfTheEndLivesOn) {
    std::optional<Async<SessionStartResult>> second;
    const auto close = host.service.close;
    host.service.close = [&](const platform::HttpRequest& request) {
        if (device->isOutOfOrder) {
            host.phone().queue().post([&] {
                device->isOutOfOrder = false;
                second = host.core.startRecording(VexConfiguration(false, false));
            });
        }
        return close(request);
    };
    EXPECT_EQ(host.start().kind, SessionStartResult::Kind::fail);
    expectLine();
    EXPECT_EQ(host.await(second.value()).kind, SessionStartResult::Kind::success);
    EXPECT_EQ(host.state(), "started");
    host.advance(10);
    EXPECT_EQ(host.service.chunks.size(), 1U);
    host.phone().application().moveToBackground();
    host.advance(0.1);
    EXPECT_EQ(host.state(), "stopped");
    EXPECT_EQ(host.service.closed, 2);
}

}  // namespace
}  // namespace mireth
