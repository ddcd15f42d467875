// What is marked as masked is hidden without masking, too, however it is drawn.
#include <gtest/gtest.h>

#include <QGraphicsOpacityEffect>
#include <QGraphicsScene>
#include <QGraphicsView>

#include "MirethVex/Qt/QtPlatform.hpp"
#include "qt/support/EventLoop.hpp"
#include "qt/support/Pictures.hpp"

namespace mireth::qttest {

namespace {

QPalette with(QPalette::ColorRole role, const QColor& color) {
    QPalette palette(QColor(240, 240, 240));
    palette.setColor(role, color);
    return palette;
}

QWidget& addRedPanel(QWidget& parent, const QRect& place) {
    auto* const panel = new QWidget(&parent);
    panel->setGeometry(place);
    panel->setAutoFillBackground(true);
    panel->setPalette(with(QPalette::Window, Qt::red));
    return *panel;
}

/// A window, and something marked in it.
class QtMarked : public testing::Test {
  protected:
    QtMarked() {
        window_.setPalette(with(QPalette::Window, QColor(240, 240, 240)));
        window_.setGeometry(0, 0, 200, 100);
    }

    QImage unmasked() {
        window_.show();
        runFor(0.05);
        return unmaskedPicture(*platform_.windowOf(window_));
    }

    const qt::QtPlatform platform_;
    QWidget window_;
};

void mark(QObject& object, bool isMarked = true) {
    object.setProperty("mirethMasked", isMarked);
}

TEST_F(QtMarked, AWidgetIsABlockBelowAGraphicsEffectToo) {
    QWidget panel(&window_);
    panel.setGeometry(0, 0, 200, 100);
    QWidget inner(&panel);
    inner.setGeometry(0, 0, 200, 100);
    QWidget& secret = addRedPanel(inner, {10, 10, 80, 50});
    addRedPanel(inner, {120, 10, 50, 50}).setPalette(with(QPalette::Window, QColor(16, 16, 16)));
    auto* const effect = new QGraphicsOpacityEffect;
    effect->setOpacity(0.9);
    panel.setGraphicsEffect(effect);
    EXPECT_NE(findCanary(unmasked()), std::nullopt);
    mark(secret);
    const QImage seen = unmasked();
    EXPECT_EQ(findCanary(seen), std::nullopt);
    EXPECT_TRUE(isMaskBlock(seen.pixel(50, 35)));
    EXPECT_LT(qRed(seen.pixel(145, 35)), 100) << "what lies beside it is shown";
}

TEST_F(QtMarked, AWidgetIsABlockInAGraphicsSceneToo) {
    QGraphicsScene scene(0, 0, 180, 80);
    auto* const embedded = new QWidget;
    QWidget& secret = addRedPanel(*embedded, {0, 0, 50, 50});
    embedded->resize(60, 60);
    scene.addWidget(embedded);
    QGraphicsView view(&scene, &window_);
    view.setGeometry(0, 0, 200, 100);
    EXPECT_NE(findCanary(unmasked()), std::nullopt);
    mark(secret);
    EXPECT_EQ(findCanary(unmasked()), std::nullopt);
}

}  // namespace

}  // namespace mireth::qttest
