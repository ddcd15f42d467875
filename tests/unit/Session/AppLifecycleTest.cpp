#include <gmock/gmock.h>

#include "MirethVex/Headless/HeadlessApplication.hpp"
#include "PrivateSide/Detection/AppLifecycleObserver.hpp"
#include "support/LogCapture.hpp"

namespace mireth {
namespace {

using testing::ElementsAre;
using Moment = std::optional<std::int64_t>;

struct AppLifecycle : testing::Test {
    test::LogCapture capture;
    double now = 1.5;
    std::shared_ptr<headless::HeadlessApplication> application =
        std::make_shared<headless::HeadlessApplication>();
    AppLifecycleObserver observer{capture.log(), *application, [this] { return Date(now); }};
    std::vector<Moment> heard;
    AnyCancellable token;
    void listen() {
        token =
            observer.appMovedToBackground().sink([this](const Moment& moment) { heard.push_back(moment); });
    }
};

TEST_F(AppLifecycle, PublishesNothingBeforeTheFirstMove) {
    listen();
    EXPECT_THAT(heard, ElementsAre(std::nullopt));
}

TEST_F(AppLifecycle, TwoMovesPublishTwoTimes) {
    listen();
    application->moveToBackground();
    now = 2.25;
    application->moveToBackground();
    EXPECT_THAT(heard, ElementsAre(std::nullopt, Moment(1500), Moment(2250)));
}

TEST_F(AppLifecycle, ANewSubscriberFirstGetsTheLastMove) {
    application->moveToBackground();
    listen();
    EXPECT_THAT(heard, ElementsAre(Moment(1500)));
}

TEST(AppLifecycleObserver, EndsItsSubscriptionWhenItIsDestroyed) {
    const auto application = std::make_shared<headless::HeadlessApplication>();
    test::LogCapture capture;
    int asked = 0;
    {
        const AppLifecycleObserver observer(capture.log(), *application, [&asked] {
            ++asked;
            return Date(1);
        });
        application->moveToBackground();
    }
    application->moveToBackground();
    EXPECT_EQ(asked, 1);
}

}  // namespace
}  // namespace mireth
