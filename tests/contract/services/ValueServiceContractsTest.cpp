#include "ValueServiceContracts.hpp"

#include <atomic>
#include <regex>
#include <set>
#include <stdexcept>
#include <thread>

#include "support/RecordingController.hpp"

namespace mireth::test {

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(ClockContract);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(DeviceContract);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(RandomSourceContract);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(SystemLogContract);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(TextsContract);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(KeyValueStoreContract);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(ApplicationContract);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(PathMonitorContract);

namespace {

bool isUpperCaseUuid(const std::string& text, char version) {
    const std::regex form(std::string("[0-9A-F]{8}-[0-9A-F]{4}-") + version +
                          "[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
    return std::regex_match(text, form);
}

}  // namespace

TEST_P(ClockContract, UptimeNeverGoesBack) {
    double last = harness_->service().uptimeSeconds();
    EXPECT_GE(last, 0);
    for (int i = 0; i < 1000; ++i) {
        const double next = harness_->service().uptimeSeconds();
        EXPECT_GE(next, last);
        last = next;
    }
}

TEST_P(ClockContract, TheWallClockIsAMomentAfterTheEpoch) {
    EXPECT_GT(harness_->service().now().toTimestampMillis(), 0);
}

TEST_P(DeviceContract, AnswersStayTheSame) {
    auto& device = harness_->service();
    EXPECT_EQ(device.userInterfaceIdiom(), device.userInterfaceIdiom());
    EXPECT_EQ(device.identifierForVendor(), device.identifierForVendor());
    EXPECT_EQ(device.name(), device.name());
    EXPECT_GT(device.physicalMemory(), 0u);
    EXPECT_FALSE(device.machine().empty());
}

TEST_P(DeviceContract, TheVendorIdentifierHasUuidForm) {
    if (const auto identifier = harness_->service().identifierForVendor()) {
        const std::regex form("[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}");
        EXPECT_TRUE(std::regex_match(*identifier, form)) << *identifier;
    }
}

TEST_P(RandomSourceContract, RealNumbersStayInTheirRange) {
    double lowest = 100;
    double highest = 0;
    for (int i = 0; i < 2000; ++i) {
        const double value = harness_->service().uniformReal(0, 100);
        ASSERT_GE(value, 0);
        ASSERT_LE(value, 100);
        lowest = std::min(lowest, value);
        highest = std::max(highest, value);
    }
    EXPECT_LT(lowest, 10);
    EXPECT_GT(highest, 90);
    EXPECT_EQ(harness_->service().uniformReal(5, 5), 5);
}

TEST_P(RandomSourceContract, WholeNumbersCoverTheirRangeAndNoMore) {
    std::set<std::int64_t> values;
    for (int i = 0; i < 1000; ++i) {
        values.insert(harness_->service().uniformBelow(5));
    }
    EXPECT_EQ(values, (std::set<std::int64_t>{0, 1, 2, 3, 4}));
    EXPECT_EQ(harness_->service().uniformBelow(1), 0);
}

TEST_P(RandomSourceContract, UuidsAreUpperCaseVersionFourAndDiffer) {
    std::set<std::string> uuids;
    for (int i = 0; i < 200; ++i) {
        const std::string uuid = harness_->service().uuid();
        EXPECT_TRUE(isUpperCaseUuid(uuid, '4')) << uuid;
        uuids.insert(uuid);
    }
    EXPECT_EQ(uuids.size(), 200u);
}

TEST_P(SystemLogContract, TakesAnyBytes) {
    const std::string hostile[] = {
        "", "%n%s%s%s", std::string("a\0b", 3), "two\nlines\r\n", "\xff\xfe\x80", std::string(300'000, 'x')};
    for (const std::string& message : hostile) {
        for (const auto type : {platform::SystemLogType::info, platform::SystemLogType::error}) {
            harness_->service().writeStructured("M-VEX", message, type, message);
            harness_->service().writeLegacy("M-VEX", message, type, message);
        }
    }
}

TEST_P(TextsContract, GivesTextsAndNothingElse) {
    EXPECT_EQ(harness_->string("name"), "bridge");
    EXPECT_EQ(harness_->string("empty"), "");
    EXPECT_EQ(harness_->string("number"), std::nullopt);
    EXPECT_EQ(harness_->string("absent"), std::nullopt);
    EXPECT_EQ(harness_->string(""), std::nullopt);
}

TEST_P(KeyValueStoreContract, SynchronizingShowsWhatOthersWrote) {
    EXPECT_TRUE(harness_->store().synchronize());
    EXPECT_EQ(harness_->store().string("client"), std::nullopt);
    harness_->setFromOutside("client", "bridge");
    EXPECT_TRUE(harness_->store().synchronize());
    EXPECT_EQ(harness_->store().string("client"), "bridge");
}

TEST_P(KeyValueStoreContract, AFailedSynchronizingKeepsTheValues) {
    harness_->setFromOutside("client", "bridge");
    ASSERT_TRUE(harness_->store().synchronize());
    harness_->breakStore();
    EXPECT_FALSE(harness_->store().synchronize());
    EXPECT_EQ(harness_->store().string("client"), "bridge");
}

TEST_P(ApplicationContract, KnowsTheKeyWindow) {
    EXPECT_EQ(harness_->application().keyWindow(), nullptr);
    const auto window = std::make_shared<platform::Window>(Size{390, 844});
    harness_->setKeyWindow(window);
    EXPECT_EQ(harness_->application().keyWindow(), window);
    harness_->setKeyWindow(nullptr);
    EXPECT_EQ(harness_->application().keyWindow(), nullptr);
}

TEST_P(ApplicationContract, TellsEachMoveToTheBackgroundUntilTheTokenIsDropped) {
    int first = 0;
    int second = 0;
    auto firstToken = harness_->application().observeDidEnterBackground([&] { ++first; });
    const auto secondToken = harness_->application().observeDidEnterBackground([&] { ++second; });
    EXPECT_EQ(first, 0) << "a move before the subscription is not told";
    harness_->moveToBackground();
    harness_->moveToBackground();
    firstToken.cancel();
    harness_->moveToBackground();
    EXPECT_EQ(first, 2);
    EXPECT_EQ(second, 3);
}

TEST_P(ApplicationContract, InterceptorsHearOfScreensBeforeTheControllerUntilTheirTokenIsDropped) {
    std::vector<std::string> heard;
    const auto cart = std::make_shared<RecordingController>("Cart", heard);
    auto appear = harness_->application().interceptViewDidAppear(
        [&](const platform::ViewController& seen) { heard.push_back("+" + seen.className()); });
    auto disappear = harness_->application().interceptViewDidDisappear(
        [&](const platform::ViewController& seen) { heard.push_back("-" + seen.className()); });
    ASSERT_TRUE(appear && disappear);
    harness_->appearance().didAppear(cart, false);
    harness_->appearance().didDisappear(cart, true);
    appear.cancel();
    disappear.cancel();
    harness_->appearance().didAppear(cart, false);
    harness_->appearance().didDisappear(cart, false);
    EXPECT_EQ(heard, (std::vector<std::string>{"+Cart", "Cart appeared", "-Cart", "Cart disappeared animated",
                                               "Cart appeared", "Cart disappeared"}));
}

TEST_P(ApplicationContract, AControllerHearsWhateverAnInterceptorThrows) {
    std::vector<std::string> heard;
    const auto cart = std::make_shared<RecordingController>("Cart", heard);
    const auto token = harness_->application().interceptViewDidAppear(
        [](const platform::ViewController&) { throw std::runtime_error("a bug"); });
    harness_->appearance().didAppear(cart, false);
    EXPECT_EQ(heard, std::vector<std::string>{"Cart appeared"});
}

TEST_P(PathMonitorContract, ReportsThePathSoonAndOnAThreadOfItsOwn) {
    Counter reported;
    std::thread::id thread;
    const auto monitor = harness_->makeMonitor();
    monitor->start([&](const platform::NetworkPath&) {
        thread = std::this_thread::get_id();
        reported.increment();
    });
    ASSERT_TRUE(reported.waitFor(1));
    monitor->cancel();
    EXPECT_NE(thread, std::this_thread::get_id());
}

TEST_P(PathMonitorContract, CancellingWaitsForARunningHandler) {
    Counter started;
    std::atomic<bool> finished = false;
    const auto monitor = harness_->makeMonitor();
    monitor->start([&](const platform::NetworkPath&) {
        started.increment();
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        finished = true;
    });
    ASSERT_TRUE(started.waitFor(1));
    monitor->cancel();
    EXPECT_TRUE(finished);
    monitor->cancel();
}

TEST_P(PathMonitorContract, AHandlerMayCancel) {
    Counter reported;
    const auto monitor = harness_->makeMonitor();
    monitor->start([&](const platform::NetworkPath&) {
        monitor->cancel();
        reported.increment();
    });
    EXPECT_TRUE(reported.waitFor(1));
}

TEST_P(PathMonitorContract, AMonitorNeedNotBeStarted) {
    harness_->makeMonitor();
    const auto monitor = harness_->makeMonitor();
    monitor->cancel();
}

}  // namespace mireth::test
