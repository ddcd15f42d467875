// The scripted phone as a whole: complete, deterministic, and quiet after its end.
#include "MirethVex/Headless/HeadlessPlatform.hpp"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "support/SendAndWait.hpp"

namespace mireth::headless {
namespace {

using platform::HttpResult;
using platform::Seconds;
using platform::UrlResponse;
using test::requestTo;

HttpResult echo(const platform::HttpRequest& request) {
    UrlResponse response;
    response.body = request.url;
    return response;
}

/// A script of timers, background work and requests; the record of all that happened in it.
std::vector<std::string> play(std::uint64_t seed) {
    std::vector<std::string> log;
    HeadlessOptions options;
    options.seed = seed;
    HeadlessPlatform phone(std::move(options));
    phone.service()->setService(echo);
    const auto& services = phone.services();
    const auto say = [&](const std::string& text) {
        log.push_back(std::to_string(services.clock->now().toTimestampMillis()) + " " + text);
    };
    std::vector<AnyCancellable> requests;
    const auto timer = services.mainQueue->scheduleRepeating(Seconds(0.5), [&] {
        say("tick " + services.random->uuid());
        services.background->post([&] { say("encoded"); });
        requests.push_back(
            services.http->send(requestTo(services.random->uuid()), [&](const HttpResult& result) {
                say("answer " + result->body);
                services.mainQueue->post([&] { say("on main"); });
            }));
    });
    phone.queue().advance(Seconds(5));
    return log;
}

TEST(HeadlessPlatform, TheSameSeedGivesTheSameHistory) {
    const auto first = play(3);
    EXPECT_EQ(first.size(), 40U);
    EXPECT_EQ(first, play(3));
    EXPECT_NE(first, play(4));
}

TEST(HeadlessPlatform, WithoutAServiceRequestsFailAsWithoutANetwork) {
    HeadlessPlatform phone{HeadlessOptions()};
    std::optional<HttpResult> result;
    const auto token = phone.services().http->send(requestTo("https://example.com"),
                                                   [&](HttpResult answer) { result = std::move(answer); });
    phone.queue().drain();
    ASSERT_TRUE(result.has_value());
    EXPECT_FALSE(result->has_value());
    EXPECT_EQ(phone.service()->requests().size(), 1U);
}

TEST(HeadlessPlatform, ServicesThatOutliveThePhoneDoNothing) {
    platform::PlatformServices services;
    bool ran = false;
    {
        const HeadlessPlatform phone{HeadlessOptions()};
        services = phone.services();
    }
    services.mainQueue->post([&] { ran = true; });
    services.background->post([&] { ran = true; });
    auto token = services.http->send(requestTo("x"), [&](const HttpResult&) { ran = true; });
    EXPECT_FALSE(ran);
}

TEST(HeadlessPlatform, EveryServiceThatNeedsNoRealPartIsThere) {
    const HeadlessPlatform phone{HeadlessOptions()};
    const auto& services = phone.services();
    EXPECT_TRUE(services.mainQueue && services.background && services.clock && services.device &&
                services.application && services.information && services.userDefaults && services.http &&
                services.systemLog && services.random && services.makePathMonitor);
    EXPECT_EQ(services.information->string("VEX_VERSION"), "1.0.0");
    EXPECT_EQ(services.device->machine(), "phone14,2");
    EXPECT_EQ(services.application->keyWindow(), nullptr);
}

}  // namespace
}  // namespace mireth::headless
