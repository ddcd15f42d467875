// What QML may say: of single items, and to the library.
#include <gtest/gtest.h>

#include <QSignalSpy>

#include "MirethVex/Qt/QtPlatform.hpp"
#include "platforms/qt/qml/QmlModule.hpp"
#include "qt/support/Pictures.hpp"
#include "qt/support/QmlScene.hpp"

namespace mireth::qttest {

namespace {

class QtQmlModule : public testing::Test {
  protected:
    QtQmlModule() { qt::registerQmlModule(); }

    QImage pictureOf(QmlScene& scene) { return recordedPicture(*platform_.windowOf(scene.window())); }

    const qt::QtPlatform platform_;
};

TEST_F(QtQmlModule, MasksAnItemAndUnmasksItAgain) {
    QmlScene scene(
        "Rectangle { objectName: 'card'; property bool secret: true; width: 100; height: 50; color: 'black';"
        " Mireth.masked: secret }",
        {}, "import MirethVex");
    EXPECT_TRUE(isMaskBlock(pictureOf(scene).pixel(50, 25)));
    scene.object("card").setProperty("secret", false);
    EXPECT_FALSE(isMaskBlock(pictureOf(scene).pixel(50, 25)));
}

TEST_F(QtQmlModule, MasksAPopUpAsSoonAsItIsThere) {
    QmlScene scene(
        "Popup { objectName: 'popup'; Mireth.masked: true; x: 20; y: 20; width: 100; height: 60; padding: 0;"
        " background: Rectangle { color: 'black' } }",
        {}, "import MirethVex");
    QObject& popup = scene.object("popup");
    QMetaObject::invokeMethod(&popup, "open");
    ASSERT_TRUE(runUntil([&] {
        EXPECT_GT(qRed(pictureOf(scene).pixel(70, 50)), 100) << "no black of the pop-up's";
        return popup.property("opened").toBool();
    }));
    EXPECT_TRUE(isMaskBlock(pictureOf(scene).pixel(70, 50)));
}

TEST_F(QtQmlModule, MasksAWholeWindow) {
    QmlScene scene("Mireth.masked: true; Rectangle { width: 100; height: 50; color: 'black' }", {},
                   "import MirethVex");
    EXPECT_TRUE(isMaskBlock(pictureOf(scene).pixel(50, 25)));
}

}  // namespace

}  // namespace mireth::qttest
