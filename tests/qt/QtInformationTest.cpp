// Where the version of an app is known from.
#include "platforms/qt/system/QtInformation.hpp"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <map>
#include <memory>
#include <string>
#include <thread>

namespace mireth::qt {
namespace {

namespace keys = platform::information_keys;

class StatedInformation final : public platform::InformationDictionary {
  public:
    using Texts = std::map<std::string, std::string, std::less<>>;

    explicit StatedInformation(Texts texts) : texts_(std::move(texts)) {}

    std::optional<std::string> string(std::string_view key) const override {
        const auto found = texts_.find(key);
        return found == texts_.end() ? std::nullopt : std::optional(found->second);
    }

  private:
    const Texts texts_;
};

class QtInformationTest : public ::testing::Test {
  protected:
    ~QtInformationTest() override { QCoreApplication::setApplicationVersion(before_); }

    static QtInformation informationWith(StatedInformation::Texts texts = {}) {
        return QtInformation(std::make_shared<StatedInformation>(std::move(texts)));
    }

  private:
    const QString before_ = QCoreApplication::applicationVersion();
};

TEST_F(QtInformationTest, TheVersionOfAnAppIsTheOneItHasToldQt) {
    const auto information = informationWith();
    QCoreApplication::setApplicationVersion("4.2");
    EXPECT_EQ(information.string(keys::appVersion), "4.2");
}

TEST_F(QtInformationTest, AVersionThatIsStatedGoesFirst) {
    QCoreApplication::setApplicationVersion("4.2");
    EXPECT_EQ(informationWith({{"CFBundleShortVersionString", "7.0"}}).string(keys::appVersion), "7.0");
}

TEST_F(QtInformationTest, AnAppWithoutAVersionHasNone) {
    QCoreApplication::setApplicationVersion("");
    EXPECT_EQ(informationWith().string(keys::appVersion), std::nullopt);
}

TEST_F(QtInformationTest, AllElseIsWhatIsStated) {
    QCoreApplication::setApplicationVersion("4.2");
    const auto information = informationWith({{"VEX_VERSION", "1.0"}});
    EXPECT_EQ(information.string(keys::vexVersion), "1.0");
    EXPECT_EQ(information.string(keys::srEndpointUrl), std::nullopt);
}

TEST_F(QtInformationTest, AnotherThreadIsToldWhatTheMainThreadHasSeen) {
    const auto information = informationWith();
    QCoreApplication::setApplicationVersion("4.2");
    const auto elsewhere = [&] {
        std::optional<std::string> version;
        std::thread([&] { version = information.string(keys::appVersion); }).join();
        return version;
    };
    EXPECT_EQ(elsewhere(), std::nullopt);
    EXPECT_EQ(information.string(keys::appVersion), "4.2");
    EXPECT_EQ(elsewhere(), "4.2");
}

}  // namespace
}  // namespace mireth::qt
