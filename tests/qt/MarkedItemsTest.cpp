// Items that are marked as masked are hidden with all that they open, without masking, too.
#include <gtest/gtest.h>

#include <QDialog>
#include <QPalette>
#include <string>
#include <vector>

#include "MirethVex/Qt/QtPlatform.hpp"
#include "platforms/qt/qml/QmlModule.hpp"
#include "qt/support/Pictures.hpp"
#include "qt/support/QmlScene.hpp"

namespace mireth::qttest {

namespace {

void mark(QObject& object, bool isMarked = true) {
    object.setProperty("mirethMasked", isMarked);
}

class QtMarkedItems : public testing::Test {
  protected:
    QtMarkedItems() { qt::registerQmlModule(); }
    QImage picture(QmlScene& scene, bool withEnabledMasking) {
        runFor(0.3);
        return recordedPicture(*platform_.windowOf(scene.window()), {}, withEnabledMasking);
    }

    /// In a frame with masking, and in one without.
    void expectHidden(QmlScene& scene) {
        runFor(0.02);
        const auto window = platform_.windowOf(scene.window());
        EXPECT_EQ(findCanary(recordedPicture(*window)), std::nullopt) << "with masking";
        EXPECT_EQ(findCanary(unmaskedPicture(*window)), std::nullopt) << "without";
    }

    const qt::QtPlatform platform_;
};

QQuickItem* itemBelow(QQuickItem& item, const QString& name) {
    if (item.objectName() == name) {
        return &item;
    }
    for (QQuickItem* const child : item.childItems()) {
        if (QQuickItem* const found = itemBelow(*child, name)) {
            return found;
        }
    }
    return nullptr;
}

TEST_F(QtMarkedItems, WhatAControlOpensIsABlock) {
    QmlScene scene(
        "ComboBox { objectName: 'box'; model: ['4111', '4222'];"
        " popup.background: Rectangle { color: 'red' } Component.onCompleted: popup.open() }");
    EXPECT_NE(findCanary(picture(scene, false)), std::nullopt);
    mark(scene.object("box"));
    EXPECT_EQ(findCanary(picture(scene, false)), std::nullopt);
    EXPECT_EQ(findCanary(picture(scene, true)), std::nullopt);
}

TEST_F(QtMarkedItems, APopUpAndAWindowOfAMarkedItemAreBlocks) {
    QmlScene scene(
        "Item { anchors.fill: parent; Item { id: card; objectName: 'card'\n"
        "Popup { visible: true; x: 10; y: 10; width: 60; height: 60; background: Rectangle { color: 'red' } "
        "}\n"
        "Window { objectName: 'window'; visible: true; flags: Qt.Dialog; width: 60; height: 60\n"
        " Rectangle { anchors.fill: parent; color: 'lime' } } } }",
        {}, "import MirethVex");
    dynamic_cast<QWindow&>(scene.object("window")).setPosition(scene.window().position() + QPoint(100, 10));
    const QImage open = picture(scene, true);
    EXPECT_GT(saturation(open.pixel(40, 40)), 100);
    EXPECT_GT(saturation(open.pixel(130, 40)), 100);
    mark(scene.object("card"));
    for (const bool withEnabledMasking : {true, false}) {
        const QImage seen = picture(scene, withEnabledMasking);
        EXPECT_TRUE(isMaskBlock(seen.pixel(40, 40)));
        EXPECT_TRUE(isMaskBlock(seen.pixel(130, 40)));
    }
}

TEST_F(QtMarkedItems, AWindowAndAPopUpMayBeMarkedByTheirProperty) {
    QmlScene scene(
        "Popup { objectName: 'popup'; visible: true; x: 10; y: 10; width: 60; height: 60;"
        " background: Rectangle { color: 'red' } }");
    EXPECT_NE(findCanary(picture(scene, true)), std::nullopt);
    mark(scene.object("popup"));
    EXPECT_EQ(findCanary(picture(scene, true)), std::nullopt);
    mark(scene.object("popup"), false);
    EXPECT_NE(findCanary(picture(scene, true)), std::nullopt);
    mark(scene.window());
    EXPECT_TRUE(isMaskBlock(picture(scene, true).pixel(150, 50)));
}

TEST_F(QtMarkedItems, WhatIsMovedOutOfAMarkedItemIsABlock) {
    QmlScene scene(
        "Item { width: 50; height: 50; Mireth.masked: true\n"
        " Rectangle { parent: other; width: 50; height: 50; color: 'red' } }\n"
        "Item { width: 50; height: 50\n"
        " Rectangle { parent: other; y: 50; width: 50; height: 50; color: '#101010' } }\n"
        "Item { id: other; x: 100 }",
        {}, "import MirethVex");
    expectHidden(scene);
    const QImage seen = picture(scene, true);
    EXPECT_TRUE(isMaskBlock(seen.pixel(125, 25)));
    EXPECT_LT(qRed(seen.pixel(125, 75)), 30) << "what comes from elsewhere is shown";
}

TEST_F(QtMarkedItems, ARowThatIsDraggedOutOfAMarkedListIsABlock) {
    const std::string dragged =
        "property bool isHeld: false; states: State { when: row.isHeld;"
        " ParentChange { target: row; parent: window.contentItem } }";
    const std::string row =
        "Rectangle { id: row; objectName: 'row' + index; implicitWidth: 200; implicitHeight: 30; color: "
        "'red'; ";
    const std::vector<std::string> delegates{
        row + dragged + " }", "Item { implicitWidth: 200; implicitHeight: 30; " + row + dragged + " } }"};
    for (const std::string& delegate : delegates) {
        for (const char* const view :
             {"ListView { ", "GridView { cellWidth: 200; cellHeight: 30; ", "TableView { "}) {
            SCOPED_TRACE(view + delegate);
            QmlScene scene(
                "id: window\n" + std::string(view) +
                    "Mireth.masked: true; width: 200; height: 100; model: 3; delegate: " + delegate + " }",
                {}, "import MirethVex");
            expectHidden(scene);
            QQuickItem* const held = itemBelow(*scene.window().contentItem(), "row1");
            ASSERT_NE(held, nullptr);
            held->setProperty("isHeld", true);
            ASSERT_EQ(held->parentItem(), scene.window().contentItem());
            expectHidden(scene);
        }
    }
}

TEST_F(QtMarkedItems, AMarkOfTheAppsOwnStaysWhenQmlNamesAScreen) {
    QmlScene scene(
        "Rectangle { objectName: 'page'; property string name: 'One'; anchors.fill: parent; color: 'red'\n"
        " Mireth.screen: name }",
        {}, "import MirethVex");
    QObject& page = scene.object("page");
    mark(page);
    expectHidden(scene);
    page.setProperty("name", "Two");
    EXPECT_EQ(page.property("mirethScreen"), "Two");
    expectHidden(scene);
}

TEST_F(QtMarkedItems, AMarkOfTheAppsOwnStaysWhenAPopUpOpens) {
    QmlScene scene(
        "Popup { objectName: 'popup'; width: 60; height: 60; Mireth.screen: 'Card'\n"
        " background: Rectangle { color: 'red' } }",
        {}, "import MirethVex");
    QObject& popup = scene.object("popup");
    QMetaObject::invokeMethod(&popup, "open");
    EXPECT_NE(findCanary(picture(scene, true)), std::nullopt);
    QMetaObject::invokeMethod(&popup, "close");
    mark(*popup.property("contentItem").value<QQuickItem*>()->parentItem());
    QMetaObject::invokeMethod(&popup, "open");
    expectHidden(scene);
}

TEST_F(QtMarkedItems, QmlTakesBackNoMarkButItsOwn) {
    QmlScene scene(
        "Rectangle { objectName: 'card'; property bool isSecret: true; width: 50; height: 50; color: 'red'\n"
        " Mireth.masked: isSecret }",
        {}, "import MirethVex");
    QObject& card = scene.object("card");
    card.setProperty("mirethScreen", "Card");
    expectHidden(scene);
    card.setProperty("isSecret", false);
    EXPECT_NE(findCanary(picture(scene, true)), std::nullopt);
    card.setProperty("isSecret", true);
    expectHidden(scene);
    mark(card);
    card.setProperty("isSecret", false);
    expectHidden(scene);
    EXPECT_EQ(card.property("mirethScreen"), "Card");
}

TEST_F(QtMarkedItems, ADialogOfWidgetsIsABlockAboveAMarkedWindow) {
    QmlScene scene("");
    QDialog dialog;
    dialog.winId();
    dialog.windowHandle()->setTransientParent(&scene.window());
    dialog.setPalette(QPalette(Qt::red));
    dialog.setGeometry({scene.window().position(), QSize(50, 50)});
    dialog.show();
    EXPECT_NE(findCanary(picture(scene, false)), std::nullopt);
    mark(scene.window());
    expectHidden(scene);
}

TEST_F(QtMarkedItems, WhatAMarkedRepeaterMakesIsABlock) {
    QmlScene scene(
        "Column { id: column; objectName: 'column'; property bool isSecret: true; property int rows: 1\n"
        " Repeater { Mireth.masked: column.isSecret; model: column.rows\n"
        "  Repeater { model: 2; Rectangle { width: 50; height: 20; color: 'red' } } } }",
        {}, "import MirethVex");
    QObject& column = scene.object("column");
    expectHidden(scene);
    column.setProperty("rows", 2);
    expectHidden(scene);
    column.setProperty("isSecret", false);
    EXPECT_NE(findCanary(picture(scene, true)), std::nullopt);
    column.setProperty("isSecret", true);
    expectHidden(scene);
}

TEST_F(QtMarkedItems, WhatARepeaterMakesKeepsAMarkOfItsOwn) {
    QmlScene scene(
        "Column { id: column; objectName: 'column'; property bool isSecret: true; property bool areSecret: "
        "true\n"
        " Repeater { Mireth.masked: column.areSecret; model: 2\n"
        "  Rectangle { width: 50; height: 20; color: 'red'; Mireth.masked: column.isSecret } } }",
        {}, "import MirethVex");
    QObject& column = scene.object("column");
    column.setProperty("areSecret", false);
    expectHidden(scene);
    column.setProperty("areSecret", true);
    column.setProperty("isSecret", false);
    expectHidden(scene);
}

}  // namespace

}  // namespace mireth::qttest
