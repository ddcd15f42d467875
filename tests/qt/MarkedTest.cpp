// Widgets that are marked as masked are hidden with all that they open, without masking, too.
#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QComboBox>
#include <QCompleter>
#include <QCursor>
#include <QDialog>
#include <QGraphicsOpacityEffect>
#include <QGraphicsScene>
#include <QGraphicsView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QToolTip>
#include <QWhatsThis>

#include "MirethVex/Qt/QtPlatform.hpp"
#include "platforms/qt/objects/MarkedWidgets.hpp"
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

    QImage unmasked() { return look(false); }
    QImage masked() { return look(true); }

    const qt::QtPlatform platform_;
    QWidget window_;

  private:
    QImage look(bool withEnabledMasking) {
        window_.show();
        runFor(0.05);
        return recordedPicture(*platform_.windowOf(window_), {}, withEnabledMasking);
    }
};

void mark(QObject& object) {
    object.setProperty("mirethMasked", true);
}

TEST_F(QtMarked, AWidgetIsABlockBelowAGraphicsEffectToo) {
    QWidget panel(&window_);
    panel.setGeometry(0, 0, 200, 100);
    QWidget inner(&panel);
    inner.setGeometry(0, 0, 200, 100);
    QWidget& secret = addRedPanel(inner, {10, 10, 80, 50});
    addRedPanel(inner, {120, 10, 50, 50}).setPalette(with(QPalette::Window, QColor(16, 16, 16)));
    auto* const effect = new QGraphicsOpacityEffect;
    effect->setOpacity(1);
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

TEST_F(QtMarked, AViewInTheVerySceneThatItShowsIsLookedIntoOnce) {
    QGraphicsScene scene;
    scene.addWidget(new QGraphicsView(&scene));
    const QGraphicsView view(&scene);
    EXPECT_FALSE(qt::showsMarked(*view.viewport()));
    auto* const secret = new QLabel("4111 1111");
    mark(*secret);
    scene.addWidget(secret);
    EXPECT_TRUE(qt::showsMarked(*view.viewport()));
    EXPECT_TRUE(qt::holdsMarked(view));
}

TEST_F(QtMarked, TheListOfAComboBoxIsABlock) {
    QComboBox box(&window_);
    box.setGeometry(10, 10, 150, 30);
    box.addItems({"4111 1111", "4222 2222"});
    box.view()->setPalette(with(QPalette::Base, Qt::red));
    window_.show();
    box.showPopup();
    EXPECT_NE(findCanary(unmasked()), std::nullopt);
    mark(box);
    EXPECT_EQ(findCanary(unmasked()), std::nullopt);
    box.hidePopup();
}

TEST_F(QtMarked, TheListOfACompleterIsABlock) {
    QLineEdit edit(&window_);
    edit.setGeometry(10, 10, 150, 30);
    QCompleter completer(QStringList{"4111 1111", "4222 2222"});
    edit.setCompleter(&completer);
    completer.popup()->setPalette(with(QPalette::Base, Qt::red));
    window_.show();
    edit.setFocus();
    completer.setCompletionPrefix("4");
    completer.complete();
    EXPECT_NE(findCanary(unmasked()), std::nullopt);
    mark(edit);
    EXPECT_EQ(findCanary(unmasked()), std::nullopt);
    completer.popup()->hide();
}

TEST_F(QtMarked, TheMenuOfAButtonIsABlockWithTheMenusThatItOpens) {
    QPushButton button("Cards", &window_);
    QMenu menu;
    QMenu submenu("More");
    for (QMenu* const each : {&menu, &submenu}) {
        each->addAction("4111 1111");
        each->setPalette(with(QPalette::Window, Qt::red));
    }
    menu.addMenu(&submenu);
    button.setMenu(&menu);
    window_.show();
    menu.popup(window_.mapToGlobal(QPoint(0, 30)));
    submenu.popup(window_.mapToGlobal(QPoint(100, 30)));
    EXPECT_NE(findCanary(unmasked()), std::nullopt);
    mark(button);
    EXPECT_EQ(findCanary(unmasked()), std::nullopt);
    menu.close();
}

TEST_F(QtMarked, ItsToolTipIsABlockAlsoOneThatAnotherWidgetHadBefore) {
    const QString red("<p style='background-color: red'>4111 1111</p>");
    QLabel plain("plain", &window_);
    plain.setToolTip(red);
    QLabel card("card", &window_);
    card.setToolTip(red + red);
    mark(card);
    // A tip goes away when its window becomes the active one.
    (void)unmasked();
    const QPoint place = window_.mapToGlobal(QPoint(0, 25));
    QToolTip::showText(place, plain.toolTip(), &plain);
    EXPECT_NE(findCanary(unmasked()), std::nullopt);
    QToolTip::showText(place, card.toolTip(), &card);
    EXPECT_EQ(findCanary(unmasked()), std::nullopt);
    QToolTip::hideText();
}

TEST_F(QtMarked, AToolTipThatMayBeItsOwnIsABlock) {
    const QString red("<p style='background-color: red'>4111 1111</p>");
    QLabel plain("plain", &window_);
    plain.setGeometry(0, 0, 90, 20);
    QLabel card("card", &window_);
    card.setGeometry(100, 0, 90, 20);
    (void)unmasked();
    // As for a key or a touch, with the mouse left elsewhere.
    QCursor::setPos(window_.mapToGlobal(QPoint(10, 90)));
    QToolTip::showText(window_.mapToGlobal(QPoint(0, 25)), red, &plain);
    QToolTip::showText(window_.mapToGlobal(QPoint(0, 25)), red + red, &card);
    EXPECT_NE(findCanary(unmasked()), std::nullopt);
    mark(card);
    EXPECT_EQ(findCanary(unmasked()), std::nullopt);
    QToolTip::hideText();
}

TEST_F(QtMarked, WhatIsThisIsABlockWhereAnythingIsMarked) {
    QLabel card("card", &window_);
    (void)unmasked();
    QWhatsThis::showText(window_.mapToGlobal(QPoint(0, 25)), "<p style='background-color: red'>4111</p>",
                         &card);
    EXPECT_NE(findCanary(unmasked()), std::nullopt);
    mark(card);
    EXPECT_EQ(findCanary(unmasked()), std::nullopt);
    QWhatsThis::hideText();
}

/// Lets the mouse through, as an overlay does.
class Overlay : public QWidget {
  public:
    Overlay() : QWidget(nullptr, Qt::ToolTip) { setAttribute(Qt::WA_TransparentForMouseEvents); }
    int timesPainted = 0;

  protected:
    void paintEvent(QPaintEvent* /*event*/) override { ++timesPainted; }
};

TEST_F(QtMarked, NothingIsDoneToOtherWindowsForAToolTipThatIsMaskedAnyway) {
    QLabel card("card", &window_);
    (void)masked();
    QCursor::setPos(card.mapToGlobal(QPoint(5, 5)));
    QToolTip::showText(card.mapToGlobal(QPoint(5, 25)), "4111 1111", &card);
    Overlay overlay;
    overlay.setGeometry(window_.geometry());
    overlay.show();
    runFor(0.05);
    overlay.timesPainted = 0;
    (void)masked();
    runFor(0.05);
    // To ask what lies below it, Qt would cut a hole into it for a moment.
    EXPECT_EQ(overlay.timesPainted, 0);
    QToolTip::hideText();
}

TEST_F(QtMarked, ADialogOfAMarkedWidgetIsABlock) {
    QWidget panel(&window_);
    QDialog dialog(&panel);
    dialog.setGeometry(20, 20, 60, 60);
    addRedPanel(dialog, {0, 0, 60, 60});
    window_.show();
    dialog.show();
    EXPECT_NE(findCanary(masked()), std::nullopt);
    mark(panel);
    EXPECT_EQ(findCanary(masked()), std::nullopt);
    EXPECT_EQ(findCanary(unmasked()), std::nullopt);
    EXPECT_TRUE(isMaskBlock(unmasked().pixel(50, 50)));
}

}  // namespace

}  // namespace mireth::qttest
