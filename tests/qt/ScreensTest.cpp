// Which screens of an app are noticed, and under which names.
#include <gmock/gmock.h>

#include <QDialog>
#include <QLabel>
#include <QMenu>
#include <QStackedWidget>

#include "MirethVex/Qt/QtPlatform.hpp"
#include "contract/services/TestSupport.hpp"
#include "platforms/qt/qml/QmlModule.hpp"
#include "qt/support/EventLoop.hpp"
#include "qt/support/Pictures.hpp"
#include "qt/support/QmlScene.hpp"

namespace mireth::qttest {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Basket : public QWidget {
    Q_OBJECT
};

class StackWithASignalOfItsOwn : public QStackedWidget {
    Q_OBJECT
  Q_SIGNALS:
    void currentChanged(int index);
};

class QtScreens : public testing::Test {
  protected:
    QtScreens() {
        qt::registerQmlModule();
        auto& application = *platform_.services().application;
        appeared_ = application.interceptViewDidAppear(
            [this](const platform::ViewController& screen) { heard_.push_back("+" + screen.className()); });
        disappeared_ = application.interceptViewDidDisappear(
            [this](const platform::ViewController& screen) { heard_.push_back("-" + screen.className()); });
    }

    /// As a recording does, and then lets the queue run.
    void pass(const std::shared_ptr<platform::Window>& window) {
        (void)recordedPicture(*window);
        runFor(0.02);
    }
    std::vector<std::string> heard() { return std::exchange(heard_, {}); }

    const qt::QtPlatform platform_;

  private:
    std::vector<std::string> heard_;
    AnyCancellable appeared_;
    AnyCancellable disappeared_;
};

TEST_F(QtScreens, TheRecordedWindowIsAScreenOnce) {
    QWidget window;
    window.setProperty("mirethScreen", "Main");
    window.show();
    const auto recorded = platform_.windowOf(window);
    pass(recorded);
    EXPECT_THAT(heard(), ElementsAre("+Main"));
    pass(recorded);
    EXPECT_THAT(heard(), IsEmpty());
    window.hide();
    pass(recorded);
    EXPECT_THAT(heard(), ElementsAre("-Main"));
}

TEST_F(QtScreens, EachRecordingBeginsWithTheScreensThatAreThere) {
    QStackedWidget window;
    window.setProperty("mirethScreen", "Main");
    window.addWidget(new QLabel);
    window.addWidget(new Basket);
    window.show();
    const auto recorded = platform_.windowOf(window);
    const auto recording = std::make_shared<platform::GestureRecognizer>();
    recorded->addGestureRecognizer(recording);
    pass(recorded);
    EXPECT_THAT(heard(), ElementsAre("+Main", "+QLabel"));
    recorded->removeGestureRecognizer(recording);
    window.setCurrentIndex(1);
    runFor(0.02);
    EXPECT_THAT(heard(), IsEmpty()) << "nobody listens";
    recorded->addGestureRecognizer(recording);
    pass(recorded);
    EXPECT_THAT(heard(), ElementsAre("+Main", "+Basket"));
}

TEST_F(QtScreens, APageOfAStackGoesByItsClassAndItsChangeIsHeardAtOnce) {
    QWidget window;
    window.setProperty("mirethScreen", "Main");
    window.resize(200, 100);
    QStackedWidget stack(&window);
    stack.setGeometry(0, 0, 200, 100);
    auto* const home = new QLabel;
    home->setProperty("mirethScreen", "Home");
    stack.addWidget(home);
    stack.addWidget(new Basket);
    window.show();
    const auto recorded = platform_.windowOf(window);
    pass(recorded);
    EXPECT_THAT(heard(), ElementsAre("+Main", "+Home"));
    stack.setCurrentIndex(1);
    runFor(0.02);
    EXPECT_THAT(heard(), ElementsAre("-Home", "+Basket"));
}

TEST_F(QtScreens, AChangeOfPageIsHeardAtOnceThoughAClassOfTheAppsHasASignalOfThatName) {
    StackWithASignalOfItsOwn window;
    window.addWidget(new QLabel);
    window.addWidget(new Basket);
    window.show();
    const auto recorded = platform_.windowOf(window);
    pass(recorded);
    heard();
    window.setCurrentIndex(1);
    runFor(0.02);
    EXPECT_THAT(heard(), ElementsAre("-QLabel", "+Basket"));
}

TEST_F(QtScreens, AStackInACornerOfTheWindowHoldsNoPage) {
    QWidget window;
    window.setProperty("mirethScreen", "Main");
    window.resize(200, 100);
    QStackedWidget stack(&window);
    stack.setGeometry(0, 0, 50, 50);
    stack.addWidget(new Basket);
    window.show();
    pass(platform_.windowOf(window));
    EXPECT_THAT(heard(), ElementsAre("+Main"));
}

TEST_F(QtScreens, ADialogIsAScreenAndAMenuIsNone) {
    QWidget window;
    window.setProperty("mirethScreen", "Main");
    QDialog dialog(&window);
    QMenu menu(&window);
    menu.addAction("Copy");
    window.show();
    const auto recorded = platform_.windowOf(window);
    pass(recorded);
    (void)heard();
    dialog.show();
    menu.popup(QPoint(10, 10));
    pass(recorded);
    EXPECT_THAT(heard(), ElementsAre("+QDialog"));
    dialog.hide();
    pass(recorded);
    EXPECT_THAT(heard(), ElementsAre("-QDialog"));
}

TEST_F(QtScreens, AWindowOfItemsIsOneScreenUnderItsName) {
    QmlScene scene("Mireth.screen: 'Shop'", {}, "import MirethVex");
    pass(platform_.windowOf(scene.window()));
    EXPECT_THAT(heard(), ElementsAre("+Shop"));
}

TEST_F(QtScreens, ADialogOfItemsIsAScreenAndOtherPopUpsAreNone) {
    QmlScene scene(
        "Mireth.screen: 'Shop'\n"
        "Dialog { objectName: 'terms'; title: 'Terms' } Dialog { objectName: 'pay'; Mireth.screen: 'Pay' }"
        "Menu { objectName: 'menu'; MenuItem { text: 'Copy' } }",
        {}, "import MirethVex");
    const auto recorded = platform_.windowOf(scene.window());
    pass(recorded);
    EXPECT_THAT(heard(), ElementsAre("+Shop"));
    for (const char* const popup : {"terms", "pay", "menu"}) {
        QMetaObject::invokeMethod(&scene.object(popup), "open");
    }
    pass(recorded);
    EXPECT_THAT(heard(), testing::UnorderedElementsAre("+Dialog", "+Pay"));
    for (const char* const popup : {"terms", "pay", "menu"}) {
        QMetaObject::invokeMethod(&scene.object(popup), "close");
    }
    runUntil([&scene] { return !scene.object("pay").property("visible").toBool(); });
    pass(recorded);
    EXPECT_THAT(heard(), testing::UnorderedElementsAre("-Dialog", "-Pay"));
}

TEST_F(QtScreens, PagesOfAStackViewGoByTheirTypesAndNames) {
    const test::TemporaryDirectory folder;
    test::writeFile(folder / "BasketPage.qml", "import QtQuick\nItem { }");
    QmlScene scene(
        "StackView { objectName: 'pages'; anchors.fill: parent; initialItem: BasketPage { }"
        " function go() { push(checkout, StackView.Immediate) }"
        " Component { id: checkout; Item { Mireth.screen: 'Checkout' } } }",
        QUrl::fromLocalFile(QString::fromStdString((folder / "Scene.qml").native())), "import MirethVex");
    scene.window().setProperty("mirethScreen", "Main");
    const auto recorded = platform_.windowOf(scene.window());
    pass(recorded);
    EXPECT_THAT(heard(), ElementsAre("+Main", "+BasketPage"));
    QMetaObject::invokeMethod(&scene.object("pages"), "go");
    runFor(0.02);
    EXPECT_THAT(heard(), ElementsAre("-BasketPage", "+Checkout"));
}

TEST_F(QtScreens, OfTheNamedPagesOfASwipeViewTheCurrentOneIsAScreen) {
    QmlScene scene(
        "SwipeView { objectName: 'pages'; anchors.fill: parent;"
        " Page { Mireth.screen: 'One' } Page { Mireth.screen: 'Two' } Item { Mireth.screen: 'Three' } }",
        {}, "import MirethVex");
    scene.window().setProperty("mirethScreen", "Main");
    const auto recorded = platform_.windowOf(scene.window());
    pass(recorded);
    EXPECT_THAT(heard(), ElementsAre("+Main", "+One"));
    scene.object("pages").setProperty("currentIndex", 2);
    runFor(0.02);
    EXPECT_THAT(heard(), ElementsAre("-One", "+Three"));
}

TEST_F(QtScreens, WhatLiesInTheOtherPagesOfASwipeViewIsNone) {
    QmlScene scene(
        "SwipeView { objectName: 'pages'; anchors.fill: parent;"
        " Item { Mireth.screen: 'One'; Item { anchors.fill: parent; Mireth.screen: 'Detail' } }"
        " Item { Mireth.screen: 'Two'; StackView { anchors.fill: parent;"
        " initialItem: Item { Mireth.screen: 'List' } } } }",
        {}, "import MirethVex");
    scene.window().setProperty("mirethScreen", "Main");
    const auto recorded = platform_.windowOf(scene.window());
    pass(recorded);
    EXPECT_THAT(heard(), ElementsAre("+Main", "+One", "+Detail"));
    scene.object("pages").setProperty("currentIndex", 1);
    runFor(0.02);
    EXPECT_THAT(heard(), ElementsAre("-One", "-Detail", "+Two", "+List"));
}

TEST_F(QtScreens, OnlyALoaderThatFillsTheWindowHoldsAPage) {
    const test::TemporaryDirectory folder;
    test::writeFile(folder / "Big.qml", "import QtQuick\nItem { }");
    test::writeFile(folder / "Small.qml", "import QtQuick\nItem { }");
    QmlScene scene(
        "Loader { anchors.fill: parent; source: 'Big.qml' }"
        "Loader { width: 20; height: 20; source: 'Small.qml' }",
        QUrl::fromLocalFile(QString::fromStdString((folder / "Scene.qml").native())));
    scene.window().setProperty("mirethScreen", "Main");
    pass(platform_.windowOf(scene.window()));
    EXPECT_THAT(heard(), ElementsAre("+Main", "+Big"));
}

}  // namespace

}  // namespace mireth::qttest

#include "ScreensTest.moc"
