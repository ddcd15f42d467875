#include "MirethVex/Linux/LinuxPlatform.hpp"

#include "MirethVex/Platform/Window.hpp"
#include "TestSupport.hpp"

namespace mireth::platform {

TEST(LinuxPlatform, AnswersEverything) {
    const LinuxPlatform platform;
    const PlatformServices services = platform.services();
    EXPECT_TRUE(services.mainQueue && services.background && services.clock && services.device);
    EXPECT_TRUE(services.application && services.information && services.userDefaults && services.http);
    EXPECT_TRUE(services.files && services.systemLog && services.assetWriters && services.graphics);
    EXPECT_TRUE(services.random && services.makePathMonitor && services.makePathMonitor());
    EXPECT_EQ(services.mainQueue, platform.services().mainQueue);
}

TEST(LinuxPlatform, OptionsReachTheServices) {
    LinuxPlatformOptions options;
    options.information.emplace()["VEX_VERSION"] = "9";
    options.idiom = UserInterfaceIdiom::phone;
    options.cachesDirectory = "/somewhere";
    const PlatformServices services = LinuxPlatform(options).services();
    EXPECT_EQ(services.information->string("VEX_VERSION"), "9");
    EXPECT_EQ(services.device->userInterfaceIdiom(), UserInterfaceIdiom::phone);
    EXPECT_EQ(services.files->userCachesDirectory().value(), "/somewhere");
}

TEST(LinuxPlatform, AppsOfOneVendorShareTheDevicesIdentifierWithNobodyElse) {
    const auto identifier = [](const char* vendor) {
        LinuxPlatformOptions options;
        options.vendor = vendor;
        return LinuxPlatform(options).services().device->identifierForVendor();
    };
    if (!identifier("Ours")) {
        GTEST_SKIP() << "this machine has no machine-id";
    }
    EXPECT_EQ(identifier("Ours"), identifier("Ours"));
    EXPECT_NE(identifier("Ours"), identifier("Theirs"));
}

TEST(LinuxPlatform, TheInformationDictionaryMayNameTheIdiomUnlessTheHostDoes) {
    LinuxPlatformOptions options;
    options.information.emplace()["DEVICE_IDIOM"] = "pad";
    EXPECT_EQ(LinuxPlatform(options).services().device->userInterfaceIdiom(), UserInterfaceIdiom::pad);
    options.idiom = UserInterfaceIdiom::phone;
    EXPECT_EQ(LinuxPlatform(options).services().device->userInterfaceIdiom(), UserInterfaceIdiom::phone);
    LinuxPlatformOptions wrong;
    wrong.information.emplace()["DEVICE_IDIOM"] = "toaster";
    EXPECT_EQ(LinuxPlatform(wrong).services().device->userInterfaceIdiom(),
              LinuxPlatform().services().device->userInterfaceIdiom());
}

TEST(LinuxPlatform, TheMainLoopRunsUntilItIsStopped) {
    LinuxPlatform platform;
    int ran = 0;
    platform.services().background->post([&platform, queue = platform.services().mainQueue, &ran] {
        queue->post([&] {
            ++ran;
            platform.stopMainLoop();
        });
    });
    platform.runMainLoop();
    EXPECT_EQ(ran, 1);
}

TEST(LinuxPlatform, TheHostTellsItsWindowAndItsMoveToTheBackground) {
    const LinuxPlatform platform;
    const auto window = std::make_shared<Window>(Size{10, 10});
    platform.application().setKeyWindow(window);
    EXPECT_EQ(platform.services().application->keyWindow(), window);
    int moves = 0;
    const auto token = platform.services().application->observeDidEnterBackground([&] { ++moves; });
    platform.application().moveToBackground();
    EXPECT_EQ(moves, 1);
}

TEST(LinuxPlatform, ABadInformationFileIsAWarning) {
    const test::TemporaryDirectory root;
    test::writeFile(root / "info.json", "no json");
    setenv("MIRETHVEX_INFO", (root / "info.json").c_str(), 1);
    const LinuxPlatform platform;
    unsetenv("MIRETHVEX_INFO");
    ASSERT_EQ(platform.warnings().size(), 1u);
    EXPECT_NE(platform.warnings().front().find("info.json"), std::string::npos);
}

TEST(LinuxPlatform, ReadsTheInformationFileThatItIsGiven) {
    const test::TemporaryDirectory root;
    test::writeFile(root / "info.json", R"({"VEX_VERSION": "2", "DEVICE_IDIOM": "phone"})");
    LinuxPlatformOptions options;
    options.informationFile = root / "info.json";
    EXPECT_EQ(LinuxPlatform(options).services().information->string("VEX_VERSION"), "2");
    options.information.emplace()["VEX_VERSION"] = "3";
    const LinuxPlatform platform(options);
    EXPECT_EQ(platform.services().information->string("VEX_VERSION"), "3");
    EXPECT_EQ(platform.services().device->userInterfaceIdiom(), UserInterfaceIdiom::phone);
}

using Warnings = std::vector<std::string>;

Warnings warningsOf(const std::map<std::string, std::string, std::less<>>& information) {
    LinuxPlatformOptions options;
    options.information = information;
    return LinuxPlatform(options).warnings();
}

TEST(LinuxPlatform, AValueThatTheLibraryCanMakeNothingOfIsAWarning) {
    EXPECT_EQ(
        warningsOf({{"DEVICE_IDIOM", "watch"}}),
        Warnings{"DEVICE_IDIOM in the information dictionary: must be \"phone\", \"pad\", \"desktop\" or "
                 "\"television\", not \"watch\""});
    EXPECT_EQ(
        warningsOf({{"SR_ENDPOINT_URL", "https://a.example/"}, {"KELDA_ENDPOINT_URL", "http://a.example"}}),
        (Warnings{"SR_ENDPOINT_URL in the information dictionary: \"https://a.example/\" must not end in a "
                  "slash",
                  "KELDA_ENDPOINT_URL in the information dictionary: the address is refused: only https is "
                  "spoken with this host: http://a.example:80/"}));
    EXPECT_EQ(
        warningsOf({{"KELDA_ENDPOINT_URL", "http://a.example"}, {"ALLOW_INSECURE_HTTP", "yes"}}).back(),
        "ALLOW_INSECURE_HTTP in the information dictionary: must be \"true\" or \"false\", not \"yes\"");
    EXPECT_EQ(warningsOf({{"SR_ENDPOINT_URL", "http://a.example"},
                          {"ALLOW_INSECURE_HTTP", "true"},
                          {"DEVICE_IDIOM", "phone"},
                          {"ofTheHost", "anything"}}),
              Warnings());
}

TEST(LinuxPlatform, AValueOfTheLibrarysThatIsNoTextIsAWarning) {
    const test::TemporaryDirectory root;
    test::writeFile(root / "info.json", R"({"SR_ENDPOINT_URL": 8080, "VEX_VERSION": "1", "ofTheHost": [1]})");
    setenv("MIRETHVEX_INFO", (root / "info.json").c_str(), 1);
    const LinuxPlatform platform;
    unsetenv("MIRETHVEX_INFO");
    EXPECT_EQ(platform.warnings(),
              Warnings{"SR_ENDPOINT_URL in the information dictionary: is no text and counts as absent"});
}

TEST(LinuxPlatform, TheDefaultServicesBelongToTheSharedPlatform) {
    EXPECT_EQ(makeDefaultPlatformServices().mainQueue, LinuxPlatform::shared().services().mainQueue);
}

TEST(PlainApplication, AnObserverThatThrowsKeepsNoOtherFromHearing) {
    PlainApplication application;
    int heard = 0;
    const auto first = application.observeDidEnterBackground([] { throw 7; });
    const auto second = application.observeDidEnterBackground([&] { ++heard; });
    application.moveToBackground();
    EXPECT_EQ(heard, 1);
}

}  // namespace mireth::platform
