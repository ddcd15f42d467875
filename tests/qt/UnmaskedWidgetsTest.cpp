// What a window of widgets looks like in a recording without masking, and when its widgets are painted for
// it.
#include <gtest/gtest.h>

#include <QDialog>
#include <QGraphicsOpacityEffect>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSlider>
#include <algorithm>
#include <cstdlib>
#include <functional>
#include <utility>

#include "MirethVex/Qt/QtPlatform.hpp"
#include "qt/support/Colors.hpp"
#include "qt/support/EventLoop.hpp"
#include "qt/support/Pictures.hpp"

namespace mireth::qttest {

namespace {

/// Fills itself with red, counts how often, and once does what a test wants of it meanwhile.
class Painted : public QWidget {
  public:
    using QWidget::QWidget;
    int timesPainted = 0;
    std::function<void()> whilePainting;
    QColor color = Qt::red;

  protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        ++timesPainted;
        QPainter(this).fillRect(rect(), color);
        if (const auto once = std::exchange(whilePainting, nullptr)) {
            once();
        }
    }
};

/// How many pixels of `area` differ from what is seen at its top left corner.
int marksIn(const QImage& picture, const QRect& area) {
    int marks = 0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            marks += picture.pixel(x, y) != picture.pixel(area.topLeft()) ? 1 : 0;
        }
    }
    return marks;
}

int greatestDifference(const QImage& one, const QImage& other) {
    int greatest = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QRgb left = one.pixel(x, y);
            const QRgb right = other.pixel(x, y);
            greatest =
                std::max({greatest, std::abs(qRed(left) - qRed(right)),
                          std::abs(qGreen(left) - qGreen(right)), std::abs(qBlue(left) - qBlue(right))});
        }
    }
    return greatest;
}

class QtUnmaskedWidgets : public testing::Test {
  protected:
    QtUnmaskedWidgets() {
        window_.setPalette(greyPalette());
        window_.resize(200, 100);
    }
    QImage picture() {
        window_.show();
        runFor(0.02);
        return unmaskedPicture(*recorded());
    }
    std::shared_ptr<platform::Window> recorded() {
        if (recorded_ == nullptr) {
            recorded_ = platform_.windowOf(window_);
        }
        return recorded_;
    }

    const qt::QtPlatform platform_;
    QWidget window_;
    std::shared_ptr<platform::Window> recorded_;
};

TEST_F(QtUnmaskedWidgets, ALabelAndAButtonShowTheirTextsAtTheirPlaces) {
    QLabel label("MMMM", &window_);
    label.setGeometry(20, 10, 60, 20);
    QPushButton button("MMMM", &window_);
    button.setGeometry(100, 50, 80, 30);
    const QImage seen = picture();
    EXPECT_GT(marksIn(seen, label.geometry()), 50);
    EXPECT_GT(marksIn(seen, button.geometry().adjusted(10, 6, -10, -6)), 50);
    EXPECT_EQ(marksIn(seen, {0, 0, 200, 9}), 0);
    EXPECT_EQ(marksIn(seen, {0, 35, 90, 60}), 0);
}

TEST_F(QtUnmaskedWidgets, IsWhatTheWindowItselfShows) {
    QGroupBox box("Title", &window_);
    box.setGeometry(5, 5, 120, 90);
    QLabel label("Text <b>rich</b>", &box);
    label.setGeometry(10, 30, 100, 20);
    QSlider slider(Qt::Horizontal, &box);
    slider.setGeometry(10, 60, 100, 20);
    Painted painted(&window_);
    painted.setGeometry(130, 5, 60, 60);
    const QImage seen = picture();
    QImage shown(window_.size(), QImage::Format_RGB32);
    window_.render(&shown);
    EXPECT_LE(greatestDifference(seen, shown), 1) << "but for rounding";
}

TEST_F(QtUnmaskedWidgets, AWidgetThatPaintsItselfShowsItBelowItsChildren) {
    Painted painted(&window_);
    painted.setGeometry(20, 20, 100, 50);
    QLabel child(&painted);
    child.setAutoFillBackground(true);
    child.setGeometry(10, 10, 30, 30);
    const QImage seen = picture();
    EXPECT_EQ(seen.pixel(25, 25), qRgb(255, 0, 0));
    EXPECT_EQ(seen.pixel(45, 45), qRgb(240, 240, 240));
    EXPECT_EQ(seen.pixel(121, 25), qRgb(240, 240, 240));
}

TEST_F(QtUnmaskedWidgets, APictureIsKeptUntilItsWidgetRepaints) {
    Painted painted(&window_);
    painted.setGeometry(20, 20, 100, 50);
    (void)picture();
    const int before = painted.timesPainted;
    (void)picture();
    (void)picture();
    EXPECT_EQ(painted.timesPainted, before);
    painted.color = Qt::blue;
    painted.update();
    EXPECT_EQ(picture().pixel(50, 50), qRgb(0, 0, 255));
    const int after = painted.timesPainted;
    (void)picture();
    EXPECT_EQ(painted.timesPainted, after);
}

TEST_F(QtUnmaskedWidgets, AMovedWidgetIsNotPaintedAnewAndAResizedOneIs) {
    Painted painted(&window_);
    painted.setAttribute(Qt::WA_OpaquePaintEvent);
    painted.setGeometry(20, 20, 50, 50);
    (void)picture();
    painted.resize(80, 50);
    EXPECT_EQ(picture().pixel(95, 50), qRgb(255, 0, 0));
}

TEST_F(QtUnmaskedWidgets, NothingIsPaintedWhileFramesAreMasked) {
    Painted painted(&window_);
    painted.setGeometry(20, 20, 100, 50);
    QLabel child("secret", &painted);
    (void)picture();
    const int before = painted.timesPainted;
    for (int frame = 0; frame < 3; ++frame) {
        EXPECT_EQ(findCanary(recordedPicture(*recorded())), std::nullopt);
    }
    EXPECT_EQ(painted.timesPainted, before);
}

TEST_F(QtUnmaskedWidgets, OfALongDocumentOnlyWhatIsInTheWindowIsPainted) {
    QScrollArea area(&window_);
    area.setFrameShape(QFrame::NoFrame);
    area.setGeometry(0, 0, 200, 100);
    auto* const content = new Painted;
    content->resize(150, 1'000'000);
    auto* const mark = new Painted(content);
    mark->color = Qt::blue;
    mark->setGeometry(0, 500'000, 20, 20);
    area.setWidget(content);
    area.verticalScrollBar()->setValue(499'950);
    const QImage seen = picture();
    EXPECT_EQ(seen.pixel(10, 60), qRgb(0, 0, 255));
    EXPECT_EQ(seen.pixel(10, 40), qRgb(255, 0, 0));
}

TEST_F(QtUnmaskedWidgets, AListShowsItsRows) {
    QListWidget list(&window_);
    list.setGeometry(0, 0, 200, 100);
    list.addItem("MMMM");
    EXPECT_GT(marksIn(picture(), {4, 4, 100, 16}), 50);
}

TEST_F(QtUnmaskedWidgets, AnEffectActsOnTheWidgetAndWhatIsInIt) {
    Painted painted(&window_);
    painted.setGeometry(0, 0, 100, 100);
    Painted child(&painted);
    child.setGeometry(50, 0, 50, 50);
    child.color = Qt::black;
    auto* const effect = new QGraphicsOpacityEffect;
    effect->setOpacity(0.5);
    painted.setGraphicsEffect(effect);
    const QImage seen = picture();
    EXPECT_NEAR(qGreen(seen.pixel(25, 25)), 120, 3);
    EXPECT_NEAR(qGreen(seen.pixel(75, 25)), 120, 3);
    child.color = Qt::red;
    child.update();
    EXPECT_GT(qRed(picture().pixel(75, 25)), 240);
}

TEST_F(QtUnmaskedWidgets, AWindowAboveShowsWhatIsInIt) {
    window_.setGeometry(100, 100, 200, 100);
    QDialog dialog(&window_);
    dialog.setGeometry(150, 120, 60, 50);
    Painted painted(&dialog);
    painted.setGeometry(0, 0, 30, 30);
    (void)picture();
    dialog.show();
    EXPECT_EQ(picture().pixel(55, 25), qRgb(255, 0, 0));
}

TEST_F(QtUnmaskedWidgets, WhatIsMarkedAsMaskedIsAPlainBlockAndNotPainted) {
    Painted painted(&window_);
    painted.setGeometry(20, 20, 100, 50);
    painted.setProperty("mirethMasked", true);
    (void)picture();
    const int before = painted.timesPainted;
    const QImage seen = picture();
    EXPECT_TRUE(isMaskBlock(seen.pixel(50, 50)));
    EXPECT_EQ(painted.timesPainted, before);
}

TEST_F(QtUnmaskedWidgets, APaintEventMayDeleteAnotherWidget) {
    Painted painted(&window_);
    painted.setGeometry(0, 0, 50, 50);
    auto* const sibling = new Painted(&window_);
    sibling->setGeometry(60, 0, 50, 50);
    window_.show();
    runFor(0.02);
    painted.whilePainting = [sibling] { delete sibling; };
    EXPECT_EQ(unmaskedPicture(*recorded()).pixel(25, 25), qRgb(255, 0, 0));
    EXPECT_EQ(picture().pixel(85, 25), qRgb(240, 240, 240));
}

TEST_F(QtUnmaskedWidgets, APaintEventMayAskForAnotherOne) {
    Painted painted(&window_);
    painted.setGeometry(0, 0, 50, 50);
    (void)picture();
    painted.whilePainting = [&painted] { painted.update(); };
    painted.update();
    EXPECT_EQ(picture().pixel(25, 25), qRgb(255, 0, 0));
    (void)picture();
    const int before = painted.timesPainted;
    (void)picture();
    EXPECT_EQ(painted.timesPainted, before);
}

TEST_F(QtUnmaskedWidgets, APaintEventMayRunALoopInWhichAnotherFrameIsTaken) {
    Painted painted(&window_);
    painted.setGeometry(0, 0, 50, 50);
    window_.show();
    runFor(0.02);
    QImage meanwhile;
    painted.whilePainting = [&] {
        runFor(0.01);
        meanwhile = unmaskedPicture(*recorded());
    };
    EXPECT_EQ(unmaskedPicture(*recorded()).pixel(25, 25), qRgb(255, 0, 0));
    EXPECT_EQ(meanwhile.size(), window_.size());
}

TEST_F(QtUnmaskedWidgets, APaintEventMayCloseTheRecordedWindow) {
    auto gone = std::make_unique<QWidget>();
    gone->resize(100, 100);
    auto* const painted = new Painted(gone.get());
    painted->setGeometry(0, 0, 50, 50);
    gone->show();
    runFor(0.02);
    const auto recorded = platform_.windowOf(*gone);
    painted->whilePainting = [&gone] { gone->hide(); };
    EXPECT_EQ(unmaskedPicture(*recorded).size(), QSize(100, 100));
}

}  // namespace

}  // namespace mireth::qttest
