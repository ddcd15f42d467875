// What a window of Qt Quick items looks like in the mirror: where things are, and what of them is seen.
#include <gtest/gtest.h>

#include <QtQml>
#include <functional>
#include <utility>

#include "MirethVex/Platform/TextViews.hpp"
#include "MirethVex/PublicSide/DataModels/VexConfiguration.hpp"
#include "MirethVex/Qt/QtPlatform.hpp"
#include "PrivateSide/Extensions/CALayerExtensions/LayerComparison.hpp"
#include "PrivateSide/Extensions/CALayerExtensions/LayerSnapshot.hpp"
#include "contract/services/TestSupport.hpp"
#include "qt/support/Colors.hpp"
#include "qt/support/Pictures.hpp"
#include "qt/support/QmlScene.hpp"

namespace mireth::qttest {

namespace {

class QtItemMirror : public testing::Test {
  protected:
    QImage pictureOf(QmlScene& scene, std::vector<const platform::ViewClass*> masked = {}) {
        return recordedPicture(*platform_.windowOf(scene.window()), std::move(masked));
    }
    QImage pictureOf(const std::string& body) {
        QmlScene scene(body);
        return pictureOf(scene);
    }

    const qt::QtPlatform platform_;
};

/// Where a scene that uses the files in `folder` lies.
QUrl sceneIn(const test::TemporaryDirectory& folder) {
    return QUrl::fromLocalFile(QString::fromStdString((folder / "Scene.qml").native()));
}

TEST_F(QtItemMirror, IsTheWindowsSizeAndColour) {
    const QImage seen = pictureOf("");
    EXPECT_EQ(seen.size(), QSize(200, 100));
    EXPECT_EQ(seen.pixel(100, 50), qRgb(240, 240, 240));
}

TEST_F(QtItemMirror, ARectangleShowsItsColourBorderAndCorners) {
    const QImage seen = pictureOf(
        "Rectangle { x: 20; y: 10; width: 100; height: 60; radius: 20; color: '#102030';"
        " border.width: 4; border.color: '#908070' }");
    EXPECT_TRUE(isNear(seen.pixel(70, 40), 0x10, 0x20, 0x30));
    EXPECT_TRUE(isNear(seen.pixel(22, 40), 0x90, 0x80, 0x70));
    EXPECT_TRUE(isNear(seen.pixel(21, 11), 240, 240, 240));
    EXPECT_TRUE(isNear(seen.pixel(125, 40), 240, 240, 240));
}

TEST_F(QtItemMirror, ARectangleWithoutABorderHasNone) {
    const QImage seen = pictureOf("Rectangle { x: 20; y: 10; width: 100; height: 60; color: '#a0a0a0' }");
    EXPECT_TRUE(isNear(seen.pixel(20, 40), 0xa0, 0xa0, 0xa0));
}

TEST_F(QtItemMirror, ABlackBorderOfOnePixelIsThere) {
    for (const char* const border : {"border.width: 1", "border.color: 'black'"}) {
        const QImage seen =
            pictureOf(std::string("Rectangle { x: 20; y: 10; width: 100; height: 60; color: '#a0a0a0'; ") +
                      border + " }");
        EXPECT_LT(qRed(seen.pixel(20, 40)), 20) << border;
        EXPECT_TRUE(isNear(seen.pixel(22, 40), 0xa0, 0xa0, 0xa0)) << border;
    }
}

TEST_F(QtItemMirror, AGradientRunsFromItsFirstColourToItsLast) {
    const QImage seen = pictureOf(
        "Rectangle { width: 100; height: 100; gradient: Gradient {"
        " GradientStop { position: 0; color: 'black' } GradientStop { position: 1; color: 'white' } } }");
    EXPECT_LT(qRed(seen.pixel(50, 2)), 20);
    EXPECT_NEAR(qRed(seen.pixel(50, 50)), 128, 10);
    EXPECT_GT(qRed(seen.pixel(50, 97)), 235);
}

TEST_F(QtItemMirror, ABlockStandsWhereTheTextIs) {
    const QImage seen = pictureOf("Text { x: 20; y: 30; width: 60; height: 20; text: 'secret' }");
    EXPECT_TRUE(isMaskBlock(seen.pixel(50, 40)));
    EXPECT_TRUE(isMaskBlock(seen.pixel(21, 40)));
    EXPECT_FALSE(isMaskBlock(seen.pixel(18, 40)));
    EXPECT_FALSE(isMaskBlock(seen.pixel(81, 40)));
}

TEST_F(QtItemMirror, ItemsTurnAndGrowAboutTheirOrigin) {
    const QImage seen = pictureOf(
        "Rectangle { x: 80; y: 40; width: 40; height: 10; color: 'black'; rotation: 90 }"
        "Rectangle { x: 20; y: 20; width: 10; height: 10; color: 'black'; scale: 2;"
        " transformOrigin: Item.TopLeft }");
    EXPECT_TRUE(isNear(seen.pixel(100, 28), 0, 0, 0));
    EXPECT_TRUE(isNear(seen.pixel(100, 62), 0, 0, 0));
    EXPECT_TRUE(isNear(seen.pixel(84, 45), 240, 240, 240));
    EXPECT_TRUE(isNear(seen.pixel(38, 38), 0, 0, 0));
    EXPECT_TRUE(isNear(seen.pixel(18, 18), 240, 240, 240));
}

TEST_F(QtItemMirror, AnItemTurnedOutOfThePlaneIsABlock) {
    const QImage seen = pictureOf(
        "Rectangle { x: 50; y: 20; width: 100; height: 60; color: 'black';"
        " transform: Rotation { origin.x: 50; origin.y: 30; axis { x: 0; y: 1; z: 0 } angle: 40 } }");
    EXPECT_TRUE(isMaskBlock(seen.pixel(100, 50)));
}

TEST_F(QtItemMirror, TheHighestZIsInFrontAndANegativeOneBehindTheParent) {
    const QImage seen = pictureOf(
        "Rectangle { z: 2; width: 50; height: 50; color: '#101010' }"
        "Rectangle { z: 1; width: 50; height: 50; color: '#c0c0c0' }"
        "Rectangle { x: 100; width: 50; height: 50; color: '#101010';"
        " Rectangle { z: -1; width: 50; height: 60; color: '#c0c0c0' } }");
    EXPECT_TRUE(isNear(seen.pixel(25, 25), 0x10, 0x10, 0x10));
    EXPECT_TRUE(isNear(seen.pixel(125, 25), 0x10, 0x10, 0x10));
    EXPECT_TRUE(isNear(seen.pixel(125, 55), 0xc0, 0xc0, 0xc0));
}

TEST_F(QtItemMirror, OpacityGoesDownTheTreeAndHiddenItemsAreNotThere) {
    const QImage seen = pictureOf(
        "Item { opacity: 0.5; Rectangle { width: 50; height: 50; color: 'black' } }"
        "Text { opacity: 0; x: 60; width: 50; height: 50; text: 'secret' }"
        "Item { visible: false; Text { x: 120; width: 50; height: 50; text: 'secret' } }");
    EXPECT_TRUE(isNear(seen.pixel(25, 25), 120, 120, 120));
    EXPECT_TRUE(isNear(seen.pixel(85, 25), 240, 240, 240));
    EXPECT_TRUE(isNear(seen.pixel(145, 25), 240, 240, 240));
}

TEST_F(QtItemMirror, OnlyAClippingItemCutsOffItsChildren) {
    const QImage seen = pictureOf(
        "Item { clip: true; width: 50; height: 50; Rectangle { width: 80; height: 20; color: 'black' } }"
        "Item { y: 50; width: 50; height: 50; Rectangle { width: 80; height: 20; color: 'black' } }");
    EXPECT_TRUE(isNear(seen.pixel(65, 10), 240, 240, 240));
    EXPECT_TRUE(isNear(seen.pixel(65, 60), 0, 0, 0));
}

TEST_F(QtItemMirror, ScrolledContentStandsWhereItHasBeenScrolledTo) {
    const QImage seen = pictureOf(
        "Flickable { anchors.fill: parent; contentHeight: 1000; contentY: 490;"
        " Text { y: 500; width: 100; height: 40; text: 'secret' } }");
    EXPECT_TRUE(isMaskBlock(seen.pixel(50, 30)));
    EXPECT_FALSE(isMaskBlock(seen.pixel(50, 60)));
}

TEST_F(QtItemMirror, APropertyMasksAnItemWithAllThatIsInIt) {
    QmlScene scene(
        "Rectangle { objectName: 'card'; width: 100; height: 50; color: 'black';"
        " Rectangle { width: 20; height: 20; color: 'white' } }");
    EXPECT_TRUE(isNear(pictureOf(scene).pixel(60, 25), 0, 0, 0));
    scene.object("card").setProperty("mirethMasked", true);
    EXPECT_TRUE(isMaskBlock(pictureOf(scene).pixel(60, 25)));
    EXPECT_TRUE(isMaskBlock(pictureOf(scene).pixel(10, 10)));
}

TEST_F(QtItemMirror, ATypeOfAFileIsMaskedByItsNameAndItsSubtypesWithIt) {
    const test::TemporaryDirectory folder;
    test::writeFile(folder / "CardNumber.qml", "import QtQuick\nRectangle { color: 'black' }");
    test::writeFile(folder / "GoldCardNumber.qml", "CardNumber { }");
    const auto configuration = [] {
        (void)qt::viewClassNamed("CardNumber");
        return VexConfiguration::create({"CardNumber"}, true);
    }();
    ASSERT_TRUE(configuration.has_value());
    QmlScene scene(
        "CardNumber { width: 50; height: 50 }"
        "GoldCardNumber { x: 60; width: 50; height: 50; property int extra: 1 }"
        "Rectangle { x: 120; width: 50; height: 50; color: 'black' }",
        sceneIn(folder));
    EXPECT_FALSE(isMaskBlock(pictureOf(scene).pixel(25, 25)));
    const QImage seen = pictureOf(scene, configuration->additionalViewTypesToMask);
    EXPECT_TRUE(isMaskBlock(seen.pixel(25, 25)));
    EXPECT_TRUE(isMaskBlock(seen.pixel(85, 25)));
    EXPECT_TRUE(isNear(seen.pixel(145, 25), 0, 0, 0));
}

TEST_F(QtItemMirror, TypesOfOneNameAreMaskedByWhatEachDerivesFrom) {
    const test::TemporaryDirectory folder;
    test::writeFile(folder / "HomonymSecret.qml", "import QtQuick\nRectangle { color: 'black' }");
    test::writeFile(folder / "a/Homonym.qml", "import QtQuick\nRectangle { color: 'black' }");
    test::writeFile(folder / "b/Homonym.qml", "import '..'\nHomonymSecret { }");
    QmlScene scene("A.Homonym { width: 50; height: 50 } B.Homonym { x: 100; width: 50; height: 50 }",
                   sceneIn(folder), "import 'a' as A\nimport 'b' as B");
    const QImage byBase = pictureOf(scene, {&qt::viewClassNamed("HomonymSecret")});
    EXPECT_TRUE(isNear(byBase.pixel(25, 25), 0, 0, 0));
    EXPECT_TRUE(isMaskBlock(byBase.pixel(125, 25)));
    const QImage byName = pictureOf(scene, {&qt::viewClassNamed("Homonym")});
    EXPECT_TRUE(isMaskBlock(byName.pixel(25, 25)));
    EXPECT_TRUE(isMaskBlock(byName.pixel(125, 25)));
}

TEST_F(QtItemMirror, ATypeThatWasNamedBeforeIsMaskedByWhatItDerivesFrom) {
    const test::TemporaryDirectory folder;
    test::writeFile(folder / "NamedSecret.qml", "import QtQuick\nRectangle { color: 'black' }");
    test::writeFile(folder / "NamedGoldSecret.qml", "NamedSecret { }");
    (void)qt::viewClassNamed("NamedGoldSecret");
    QmlScene scene("NamedGoldSecret { width: 50; height: 50 }", sceneIn(folder));
    EXPECT_TRUE(isMaskBlock(pictureOf(scene, {&qt::viewClassNamed("NamedSecret")}).pixel(25, 25)));
}

TEST_F(QtItemMirror, ATypeThatBearsTheNameOfAClassOfTheLibrarysIsMaskedByWhatItDerivesFrom) {
    const test::TemporaryDirectory folder;
    test::writeFile(folder / "HiddenBase.qml", "import QtQuick\nRectangle { color: 'black' }");
    test::writeFile(folder / "View.qml", "HiddenBase { }");
    QmlScene scene("My.View { width: 50; height: 50 }", sceneIn(folder), "import '.' as My");
    EXPECT_TRUE(isNear(pictureOf(scene).pixel(25, 25), 0, 0, 0));
    EXPECT_TRUE(isMaskBlock(pictureOf(scene, {&qt::viewClassNamed("HiddenBase")}).pixel(25, 25)));
}

TEST_F(QtItemMirror, ATypeThatComesToLieWhereAnotherWasIsMaskedAsItself) {
    const test::TemporaryDirectory folder;
    test::writeFile(folder / "ReloadedSecret.qml", "import QtQuick\nRectangle { color: 'black' }");
    const auto& masked = qt::viewClassNamed("ReloadedSecret");
    QQuickWindow window;
    window.resize(200, 100);
    window.show();
    const auto recorded = platform_.windowOf(window);
    for (int time = 0; time < 20; ++time) {
        const bool isSecret = time % 2 == 0;
        test::writeFile(folder / "Reloaded.qml",
                        isSecret ? "ReloadedSecret { }" : "import QtQuick\nRectangle { color: 'black' }");
        QQmlEngine engine;
        QQmlComponent component(&engine);
        component.setData("import QtQuick\nReloaded { width: 50; height: 50 }", sceneIn(folder));
        const std::unique_ptr<QQuickItem> item(qobject_cast<QQuickItem*>(component.create()));
        ASSERT_NE(item, nullptr) << component.errorString().toStdString();
        item->setParentItem(window.contentItem());
        const QImage seen = recordedPicture(*recorded, {&masked});
        EXPECT_EQ(isMaskBlock(seen.pixel(25, 25)), isSecret) << time;
    }
}

TEST_F(QtItemMirror, ATypeThatIsAPopUpIsMaskedByItsNameAndByWhatItDerivesFrom) {
    const test::TemporaryDirectory folder;
    test::writeFile(folder / "CardPopup.qml",
                    "import QtQuick\nimport QtQuick.Controls.Basic\n"
                    "Popup { background: Rectangle { color: 'black' } }");
    test::writeFile(folder / "GoldCardPopup.qml", "CardPopup { }");
    QmlScene scene("GoldCardPopup { visible: true; x: 20; y: 20; width: 60; height: 60 }", sceneIn(folder));
    EXPECT_TRUE(isNear(pictureOf(scene).pixel(50, 50), 0, 0, 0));
    EXPECT_TRUE(isNear(pictureOf(scene, {&qt::viewClassNamed("Drawer")}).pixel(50, 50), 0, 0, 0));
    for (const char* name : {"GoldCardPopup", "CardPopup", "QQuickPopup"}) {
        EXPECT_TRUE(isMaskBlock(pictureOf(scene, {&qt::viewClassNamed(name)}).pixel(50, 50))) << name;
    }
}

TEST_F(QtItemMirror, ATypeThatIsAWindowIsMaskedByItsName) {
    const test::TemporaryDirectory folder;
    test::writeFile(folder / "CardWindow.qml",
                    "import QtQuick\nWindow { visible: true; flags: Qt.Dialog; width: 60; height: 60;"
                    " Rectangle { anchors.fill: parent; color: 'black' } }");
    QmlScene scene("Item { CardWindow { objectName: 'card' } }", sceneIn(folder));
    auto& card = dynamic_cast<QQuickWindow&>(scene.object("card"));
    EXPECT_TRUE(runUntil([&card] { return card.isVisible(); }, 5));
    card.setPosition(scene.window().mapToGlobal(QPoint(20, 20)));
    const auto& masked = qt::viewClassNamed("CardWindow");
    EXPECT_TRUE(isNear(pictureOf(scene).pixel(50, 50), 0, 0, 0));
    EXPECT_TRUE(isMaskBlock(pictureOf(scene, {&masked}).pixel(50, 50))) << "above the recorded window";
    EXPECT_TRUE(isMaskBlock(recordedPicture(*platform_.windowOf(card), {&masked}).pixel(30, 30)))
        << "as the recorded window";
}

TEST_F(QtItemMirror, HowAButtonLooksWhilePressedIsNoChange) {
    QmlScene scene("Button { objectName: 'button'; text: 'Buy' }");
    const auto recorded = platform_.windowOf(scene.window());
    const QImage up = pictureOf(scene);
    const LayerSnapshot before = LayerSnapshot::capture(*recorded);
    scene.object("button").setProperty("down", true);
    EXPECT_TRUE(isEqual(before, LayerSnapshot::capture(*recorded)));
    EXPECT_NE(pictureOf(scene), up) << "it is seen all the same";
}

TEST_F(QtItemMirror, AButtonThatStaysCheckedHasChanged) {
    QmlScene scene("Button { objectName: 'button'; text: 'Buy'; checkable: true }");
    const auto recorded = platform_.windowOf(scene.window());
    const LayerSnapshot before = LayerSnapshot::capture(*recorded);
    scene.object("button").setProperty("checked", true);
    EXPECT_FALSE(isEqual(before, LayerSnapshot::capture(*recorded)));
}

/// Counts how often it is asked, and once does what a test wants of it meanwhile.
class Backend : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString text READ text CONSTANT)
    Q_PROPERTY(QColor color READ color CONSTANT)
  public:
    QString text() const { return asked(), QString("text"); }
    QColor color() const { return asked(), QColor(Qt::red); }
    static inline int timesAsked = 0;
    static inline std::function<void()> whileAsked;

  private:
    static void asked() {
        ++timesAsked;
        if (const auto once = std::exchange(whileAsked, nullptr)) {
            once();
        }
    }
};

TEST_F(QtItemMirror, AsksTheAppsObjectsForNothing) {
    qmlRegisterType<Backend>("Asked", 1, 0, "Backend");
    const test::TemporaryDirectory folder;
    test::writeFile(folder / "Field.qml",
                    "import QtQuick\nimport Asked\nText { property alias title: own.text;"
                    " property alias value: own.color; Backend { id: own } }");
    test::writeFile(
        folder / "Panel.qml",
        "import QtQuick\nimport Asked\nRectangle { property alias color: own.color;"
        " property alias border: own.text; property alias radius: own.text; Backend { id: own } }");
    QmlScene scene(
        "Field { text: 'one'; width: 20; height: 20 } Panel { x: 30; width: 20; height: 20 }"
        " Rectangle { objectName: 'last'; x: 60; width: 20; height: 20; color: 'black' }",
        sceneIn(folder));
    auto* const last = &scene.object("last");
    Backend::timesAsked = 0;
    Backend::whileAsked = [last] { delete last; };
    EXPECT_TRUE(isNear(pictureOf(scene).pixel(70, 10), 0, 0, 0));
    (void)unmaskedPicture(*platform_.windowOf(scene.window()));
    EXPECT_EQ(Backend::timesAsked, 0);
    Backend::whileAsked = nullptr;
}

TEST_F(QtItemMirror, APopUpStandsInFrontOfThePage) {
    const QImage seen = pictureOf(
        "Rectangle { anchors.fill: parent; color: 'white' }"
        "Popup { x: 20; y: 20; width: 100; height: 60; visible: true; padding: 0;"
        " background: Rectangle { color: 'black' } contentItem: Text { text: 'secret' } }");
    EXPECT_TRUE(isMaskBlock(seen.pixel(70, 50)));
}

TEST_F(QtItemMirror, AWindowThatIsTurnedAsAWholeLooksAsItDoesOnTheScreen) {
    for (const char* const turned :
         {"contentItem.rotation: 90;", "contentItem.scale: 0.5;",
          "contentItem { x: 30; y: 20; scale: 2; rotation: 180; transformOrigin: Item.TopRight }",
          "contentItem.transform: Matrix4x4 { matrix: Qt.matrix4x4(1, 0.5, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, "
          "0, 0, 1) }"}) {
        QmlScene scene(std::string(turned) +
                       " Rectangle { x: 20; width: 60; height: 50; color: '#202020' }"
                       " Rectangle { x: 70; y: 40; width: 90; height: 40; color: '#808080'; rotation: 90 }");
        const QImage shown = scene.window().grabWindow();
        const QImage seen = pictureOf(scene);
        for (int y = 2; y < 100; y += 4) {
            for (int x = 2; x < 200; x += 4) {
                // Away from edges, which are smooth in the one and not in the other.
                const bool isPlain = shown.pixel(x - 2, y - 2) == shown.pixel(x + 1, y + 1) &&
                                     shown.pixel(x - 2, y + 1) == shown.pixel(x + 1, y - 2);
                if (isPlain) {
                    EXPECT_NEAR(qRed(seen.pixel(x, y)), qRed(shown.pixel(x, y)), 3)
                        << turned << x << ", " << y;
                }
            }
        }
    }
}

TEST_F(QtItemMirror, AWindowThatIsTurnedOutOfThePlaneIsABlock) {
    const QImage seen = pictureOf(
        "contentItem.transform: Rotation { origin.x: 100; axis { x: 0; y: 1; z: 0 } angle: 60 }"
        " Rectangle { anchors.fill: parent; color: 'black' }");
    EXPECT_TRUE(isMaskBlock(seen.pixel(100, 50)));
    EXPECT_EQ(seen.pixel(10, 50), qRgb(240, 240, 240));
}

TEST_F(QtItemMirror, AWindowWithoutItemsOrWidgetsIsABlock) {
    QWindow window;
    window.resize(200, 100);
    window.show();
    EXPECT_TRUE(isMaskBlock(recordedPicture(*platform_.windowOf(window)).pixel(100, 50)));
}

}  // namespace

}  // namespace mireth::qttest

#include "ItemMirrorTest.moc"
