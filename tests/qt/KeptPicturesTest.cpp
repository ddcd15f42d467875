// How long the pictures of a recording without masking are kept.
#include <gtest/gtest.h>

#include <QWidget>
#include <memory>

#include "MirethVex/Headless/HeadlessClock.hpp"
#include "MirethVex/Headless/VirtualMainQueue.hpp"
#include "platforms/qt/window/RecordedWindow.hpp"

namespace mireth::qttest {

namespace {

class Painted : public QWidget {
  public:
    int timesPainted = 0;

  protected:
    void paintEvent(QPaintEvent* /*event*/) override { ++timesPainted; }
};

class QtKeptPictures : public testing::Test {
  protected:
    QtKeptPictures() {
        window_.resize(100, 100);
        window_.show();
        (void)recorded_.unmasked();
        window_.timesPainted = 0;
    }

    const std::shared_ptr<headless::VirtualMainQueue> queue_ = std::make_shared<headless::VirtualMainQueue>();
    Painted window_;
    const qt::RecordedWindow recorded_{
        qt::LiveWindow(window_),
        {std::make_shared<headless::HeadlessClock>(queue_, 0, 0), queue_,
         std::make_shared<platform::AppearanceDelivery>(), std::make_shared<qt::WindowOrder>()}};
};

TEST_F(QtKeptPictures, AreKeptAsLongAsFramesWithoutMaskingAreMade) {
    for (int second = 0; second < 60; ++second) {
        queue_->advance(platform::Seconds(1));
        (void)recorded_.unmasked();
    }
    EXPECT_EQ(window_.timesPainted, 0);
}

TEST_F(QtKeptPictures, AreGoneAWhileAfterTheLastOfThemWithMaskedFramesOrNone) {
    for (int second = 0; second < 11; ++second) {
        queue_->advance(platform::Seconds(1));
        (void)recorded_.subviews();
    }
    (void)recorded_.unmasked();
    EXPECT_EQ(window_.timesPainted, 1);
    queue_->advance(platform::Seconds(11));
    (void)recorded_.unmasked();
    EXPECT_EQ(window_.timesPainted, 2);
}

}  // namespace

}  // namespace mireth::qttest
