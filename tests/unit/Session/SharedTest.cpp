// The making of the shared instance out of services that call it.
#include <gtest/gtest.h>

#include <stdexcept>

#include "MirethVex/PublicSide/MirethSR.hpp"
#include "support/SessionHost.hpp"

namespace mireth {
namespace {

/// Calls the library whenever it is asked.
struct CallingLog final : platform::SystemLog {
    bool hasStructuredLog() const override {
        ++asked;
        EXPECT_FALSE(MirethSR::shared().hasActiveSession());
        return true;
    }
    void writeStructured(std::string_view, std::string_view, platform::SystemLogType,
                         std::string_view message) override {
        lines.push_back("structured " + std::string(message));
    }
    void writeLegacy(std::string_view, std::string_view, platform::SystemLogType,
                     std::string_view message) override {
        lines.push_back("plain " + std::string(message));
    }
    mutable int asked = 0;
    std::vector<std::string> lines;
};

struct CallingDefaults final : platform::KeyValueStore {
    bool synchronize() override {
        MirethSR::shared().setAllowedLoggingTags({LogTag::network});
        EXPECT_TRUE(VexConfiguration::create({}, false).has_value());
        ++asked;
        return true;
    }
    std::optional<std::string> string(std::string_view) const override { return std::nullopt; }
    int asked = 0;
};

struct ThrowingDefaults final : platform::KeyValueStore {
    bool synchronize() override { throw std::runtime_error("a bug of the host"); }
    std::optional<std::string> string(std::string_view) const override { return std::nullopt; }
};

TEST(Shared, AServiceMayCallItWhileItIsAskedTheFirstTime) {
    const test::SessionHost host;
    auto services = host.phone().services();
    const auto defaults = std::make_shared<CallingDefaults>();
    services.userDefaults = defaults;
    ASSERT_TRUE(MirethSR::installPlatformServices(services));
    auto& library = MirethSR::shared();
    EXPECT_GT(defaults->asked, 0);
    EXPECT_EQ(library.allowedLoggingTags(), std::set<LogTag>{LogTag::network});
    EXPECT_EQ(&library, &MirethSR::shared());
}

TEST(Shared, ASystemLogThatCallsItWhileItIsAskedCountsAsUnstructured) {
    const test::SessionHost host;
    auto services = host.phone().services();
    const auto log = std::make_shared<CallingLog>();
    services.systemLog = log;
    ASSERT_TRUE(MirethSR::installPlatformServices(services));
    MirethSR::shared().reportScreenAppeared("Cart");
    EXPECT_EQ(log->asked, 1);
    EXPECT_EQ(log->lines, std::vector<std::string>{"plain Can't record screen appearance. Not initialized."});
}

TEST(Shared, AServiceThatThrowsWhileItIsAskedCostsOneLine) {
    const test::SessionHost host;
    auto services = host.phone().services();
    services.userDefaults = std::make_shared<ThrowingDefaults>();
    ASSERT_TRUE(MirethSR::installPlatformServices(services));
    testing::internal::CaptureStderr();
    EXPECT_FALSE(MirethSR::shared().hasActiveSession());
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "M-VEX: a service of the platform threw: a bug of the host\n");
}

/// Asks for the library when it is let go of.
struct CallingAtItsEnd final : platform::KeyValueStore {
    ~CallingAtItsEnd() override { EXPECT_FALSE(MirethSR::shared().hasActiveSession()); }
    bool synchronize() override { return true; }
    std::optional<std::string> string(std::string_view) const override { return std::nullopt; }
};

TEST(Shared, AServiceMayCallItWhileOthersAreInstalledInItsPlace) {
    const test::SessionHost host;
    auto services = host.phone().services();
    services.userDefaults = std::make_shared<CallingAtItsEnd>();
    ASSERT_TRUE(MirethSR::installPlatformServices(std::move(services)));
    EXPECT_TRUE(MirethSR::installPlatformServices(host.phone().services()));
    EXPECT_FALSE(MirethSR::installPlatformServices(host.phone().services())) << "it was used meanwhile";
}

TEST(Shared, NoOtherServicesCanBeInstalledOnceItWasUsed) {
    const test::SessionHost host;
    ASSERT_TRUE(MirethSR::installPlatformServices(host.phone().services()));
    EXPECT_TRUE(MirethSR::installPlatformServices(host.phone().services()));
    (void)MirethSR::shared();
    EXPECT_FALSE(MirethSR::installPlatformServices(host.phone().services()));
}

}  // namespace
}  // namespace mireth
