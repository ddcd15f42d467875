// The pictures of scroll bars, sliders and dials: when they are drawn anew, and what they cost the app.
#include <gtest/gtest.h>

#include <QDial>
#include <QPixmap>
#include <QPixmapCache>
#include <QScrollBar>
#include <QSlider>
#include <QStyle>
#include <QStyleFactory>
#include <functional>
#include <memory>
#include <vector>

#include "MirethVex/Qt/QtPlatform.hpp"
#include "qt/support/Pictures.hpp"

namespace mireth::qttest {

namespace {

/// In the style that keeps most of what it draws in the cache, with room for few pictures.
class QtStyledContents : public testing::Test {
  protected:
    QtStyledContents() {
        window_.resize(200, 200);
        QPixmapCache::clear();
        QPixmapCache::setCacheLimit(400);
        own_.fill(Qt::red);
        QPixmapCache::insert("own", own_);
    }
    ~QtStyledContents() override {
        QPixmapCache::setCacheLimit(limit_);
        QPixmapCache::clear();
    }

    void add(QAbstractSlider& slider, const QRect& place) {
        slider.setStyle(fusion_.get());
        slider.setParent(&window_);
        slider.setGeometry(place);
    }
    static bool isOwnStillKept() {
        QPixmap found;
        return QPixmapCache::find("own", &found);
    }

    const int limit_ = QPixmapCache::cacheLimit();
    const qt::QtPlatform platform_;
    const std::unique_ptr<QStyle> fusion_{QStyleFactory::create("Fusion")};
    QPixmap own_{100, 100};
    QWidget window_;
};

TEST_F(QtStyledContents, LeaveTheAppsPicturesInItsCache) {
    QSlider slider(Qt::Horizontal);
    QScrollBar bar(Qt::Horizontal);
    QDial dial;
    add(slider, {0, 0, 200, 40});
    add(bar, {0, 50, 200, 20});
    add(dial, {0, 80, 100, 100});
    window_.show();
    const auto recorded = platform_.windowOf(window_);
    for (int value = 0; value < 100; ++value) {
        for (QAbstractSlider* const each :
             {static_cast<QAbstractSlider*>(&slider), static_cast<QAbstractSlider*>(&bar),
              static_cast<QAbstractSlider*>(&dial)}) {
            each->setValue(value);
        }
        (void)recorded->subviews();
    }
    EXPECT_TRUE(isOwnStillKept());
}

TEST_F(QtStyledContents, DoSoForNewControlsToo) {
    window_.show();
    const auto recorded = platform_.windowOf(window_);
    for (int value = 0; value < 100; ++value) {
        QSlider slider(Qt::Horizontal);
        add(slider, {0, 0, 200, 40});
        slider.setValue(value);
        slider.show();
        (void)recorded->subviews();
    }
    EXPECT_TRUE(isOwnStillKept());
}

TEST_F(QtStyledContents, OfADialAreDrawnAnewWhenItsNotchesChange) {
    QDial dial;
    add(dial, {0, 0, 200, 200});
    window_.show();
    const auto recorded = platform_.windowOf(window_);
    const std::vector<std::function<void()>> changes{
        [&dial] { dial.setNotchesVisible(true); },
        [&dial] { dial.setNotchTarget(20); },
        [&dial] { dial.setSingleStep(7); },
    };
    for (const auto& change : changes) {
        const QImage before = recordedPicture(*recorded);
        change();
        EXPECT_NE(recordedPicture(*recorded), before) << &change - changes.data();
    }
}

}  // namespace

}  // namespace mireth::qttest
