// Interceptors first, then the controller, whatever happens.
#include "MirethVex/Platform/AppearanceDelivery.hpp"

#include <gmock/gmock.h>

#include <stdexcept>

#include "support/RecordingController.hpp"

namespace mireth::platform {
namespace {

using test::RecordingController;
using testing::ElementsAre;

struct Appearance : testing::Test {
    AppearanceDelivery delivery;
    std::vector<std::string> heard;

    std::shared_ptr<ViewController> controller(std::function<void()> inHandler = {}) {
        return std::make_shared<RecordingController>("Cart", heard, std::move(inHandler));
    }
    AppearanceInterceptor writing(std::string what) {
        return [this, what = std::move(what)](const ViewController& seen) {
            heard.push_back(what + " " + seen.className());
        };
    }
};

TEST_F(Appearance, TheControllerHearsWithoutAnyInterceptor) {
    delivery.didAppear(controller(), true);
    delivery.didDisappear(controller(), false);
    EXPECT_THAT(heard, ElementsAre("Cart appeared animated", "Cart disappeared"));
}

TEST_F(Appearance, InterceptorsRunInTheirOrderAndBeforeTheController) {
    const auto first = delivery.interceptViewDidAppear(writing("first"));
    const auto second = delivery.interceptViewDidAppear(writing("second"));
    delivery.didAppear(controller(), false);
    EXPECT_THAT(heard, ElementsAre("first Cart", "second Cart", "Cart appeared"));
}

TEST_F(Appearance, EachInterceptorHearsItsOwnChangeOnly) {
    const auto appear = delivery.interceptViewDidAppear(writing("appear"));
    const auto disappear = delivery.interceptViewDidDisappear(writing("disappear"));
    delivery.didAppear(controller(), false);
    delivery.didDisappear(controller(), false);
    EXPECT_THAT(heard, ElementsAre("appear Cart", "Cart appeared", "disappear Cart", "Cart disappeared"));
}

TEST_F(Appearance, ADroppedTokenEndsTheInterception) {
    auto token = delivery.interceptViewDidDisappear(writing("gone"));
    token.cancel();
    delivery.didDisappear(controller(), false);
    EXPECT_THAT(heard, ElementsAre("Cart disappeared"));
}

TEST_F(Appearance, AnInterceptorThatThrowsKeepsNobodyElseFromHearing) {
    const auto bad = delivery.interceptViewDidAppear(
        [](const ViewController&) { throw std::runtime_error("interceptor's bug"); });
    const auto worse = delivery.interceptViewDidAppear([](const ViewController&) { throw 7; });
    const auto good = delivery.interceptViewDidAppear(writing("good"));
    delivery.didAppear(controller(), false);
    EXPECT_THAT(heard, ElementsAre("good Cart", "Cart appeared"));
}

TEST_F(Appearance, WhatTheControllerThrowsReachesWhoeverPresents) {
    const auto token = delivery.interceptViewDidAppear(writing("seen"));
    EXPECT_THROW(delivery.didAppear(controller([] { throw std::runtime_error("the app's bug"); }), false),
                 std::runtime_error);
    EXPECT_THAT(heard, ElementsAre("seen Cart", "Cart appeared"));
    heard.clear();
    delivery.didAppear(controller(), false);
    EXPECT_THAT(heard, ElementsAre("seen Cart", "Cart appeared"));
}

TEST_F(Appearance, TheControllerOutlivesAnInterceptorThatLetsGoOfIt) {
    auto screen = controller();
    const auto token = delivery.interceptViewDidAppear([&](const ViewController&) { screen.reset(); });
    delivery.didAppear(screen, false);
    EXPECT_EQ(screen, nullptr);
    EXPECT_THAT(heard, ElementsAre("Cart appeared"));
}

TEST_F(Appearance, AnInterceptorThatDropsItsOwnTokenHearsNoMore) {
    AnyCancellable token;
    token = delivery.interceptViewDidAppear([&](const ViewController&) {
        heard.emplace_back("once");
        token.cancel();
    });
    delivery.didAppear(controller(), false);
    delivery.didAppear(controller(), false);
    EXPECT_THAT(heard, ElementsAre("once", "Cart appeared", "Cart appeared"));
}

TEST_F(Appearance, AScreenPresentedInsideAHandlerIsDeliveredThere) {
    const auto token = delivery.interceptViewDidAppear(writing("seen"));
    std::vector<std::string>& log = heard;
    const auto inner = std::make_shared<RecordingController>("Sheet", log);
    delivery.didAppear(controller([&] { delivery.didAppear(inner, false); }), false);
    EXPECT_THAT(heard, ElementsAre("seen Cart", "Cart appeared", "seen Sheet", "Sheet appeared"));
}

TEST_F(Appearance, NothingIsDeliveredToNoController) {
    const auto token = delivery.interceptViewDidAppear(writing("seen"));
    delivery.didAppear(nullptr, false);
    delivery.didDisappear(nullptr, false);
    EXPECT_TRUE(heard.empty());
}

}  // namespace
}  // namespace mireth::platform
