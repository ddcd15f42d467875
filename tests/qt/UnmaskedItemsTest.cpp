// What a window of Qt Quick items looks like in a recording without masking.
#include <gtest/gtest.h>

#include <QBuffer>
#include <QColor>
#include <QImage>
#include <QPainter>
#include <QQmlProperty>
#include <QRectF>
#include <QVariant>
#include <string>
#include <utility>
#include <vector>

#include "MirethVex/Qt/QtPlatform.hpp"
#include "contract/services/TestSupport.hpp"
#include "qt/support/Colors.hpp"
#include "qt/support/Pictures.hpp"
#include "qt/support/QmlScene.hpp"

namespace mireth::qttest {

namespace {

/// The smallest rectangle that holds all pixels of a saturated colour.
QRect colored(const QImage& picture) {
    QRect held;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (saturation(picture.pixel(x, y)) > 100) {
                held |= QRect(x, y, 1, 1);
            }
        }
    }
    return held;
}

/// Within a few pixels at each edge: fonts are drawn in more than one way.
void expectNear(const QRect& seen, const QRect& shown) {
    constexpr int slack = 3;
    EXPECT_NEAR(seen.left(), shown.left(), slack);
    EXPECT_NEAR(seen.top(), shown.top(), slack);
    EXPECT_NEAR(seen.right(), shown.right(), slack);
    EXPECT_NEAR(seen.bottom(), shown.bottom(), slack);
}

class QtUnmaskedItems : public testing::Test {
  protected:
    QImage pictureOf(QmlScene& scene) { return unmaskedPicture(*platform_.windowOf(scene.window())); }
    QImage pictureOf(const std::string& body) {
        QmlScene scene(body);
        return pictureOf(scene);
    }
    /// Something saturated is shown, and where it is in the window.
    void expectAsShown(const std::string& body) {
        QmlScene scene(body);
        const QRect shown = colored(scene.window().grabWindow());
        ASSERT_FALSE(shown.isEmpty()) << body;
        SCOPED_TRACE(body);
        expectNear(colored(pictureOf(scene)), shown);
    }

    const qt::QtPlatform platform_;
};

TEST_F(QtUnmaskedItems, TextsAreWhereTheWindowShowsThem) {
    expectAsShown("Text { x: 20; y: 30; text: 'MMMM'; color: 'red' }");
    expectAsShown(
        "Text { width: 200; height: 100; text: 'MM'; color: 'red'; horizontalAlignment: Text.AlignRight;"
        " verticalAlignment: Text.AlignBottom }");
    expectAsShown(
        "Text { width: 200; height: 100; padding: 10; text: 'MM\\nM'; color: 'red';"
        " horizontalAlignment: Text.AlignHCenter; verticalAlignment: Text.AlignVCenter }");
    expectAsShown("Text { width: 60; wrapMode: Text.Wrap; text: 'MM MM MM MM'; color: 'red' }");
    expectAsShown("Text { width: 60; elide: Text.ElideRight; text: 'MMMMMMMMMMMM'; color: 'red' }");
    expectAsShown("Text { width: 5; text: 'MMMM'; color: 'red' }");
    expectAsShown("Text { text: '<b>MMMM</b><br>M'; color: 'red'; font.pixelSize: 20 }");
}

TEST_F(QtUnmaskedItems, EditableTextsAreWhereTheWindowShowsThem) {
    expectAsShown("TextInput { x: 10; y: 10; text: 'MMMM'; color: 'red' }");
    expectAsShown(
        "TextInput { width: 100; height: 60; text: 'MMMM'; color: 'red';"
        " horizontalAlignment: Text.AlignHCenter; verticalAlignment: Text.AlignVCenter }");
    expectAsShown("TextEdit { x: 10; y: 10; text: 'MMMM\\nMM'; color: 'red' }");
    expectAsShown("TextField { text: 'MMMM'; color: 'red'; width: 150; height: 40 }");
    expectAsShown("TextArea { text: 'MMMM'; color: 'red'; width: 150; height: 60 }");
}

TEST_F(QtUnmaskedItems, TextsAreDrawnAnewWhenAnythingChangesThatTheyAreDrawnFrom) {
    struct Text {
        const char* body;
        std::vector<std::pair<const char*, QVariant>> changes;
    };
    const std::vector<Text> texts{
        {"Text { text: 'MM'; horizontalAlignment: Text.AlignRight; verticalAlignment: Text.AlignBottom; ",
         {{"rightPadding", 30}, {"bottomPadding", 20}, {"text", "M"}, {"font.strikeout", true}}},
        {"Text { text: 'MM'; ",
         {{"leftPadding", 30}, {"topPadding", 20}, {"verticalAlignment", "AlignBottom"}}},
        {"TextInput { text: 'MM'; ", {{"leftPadding", 30}, {"topPadding", 20}, {"text", "M"}}},
        {"TextInput { text: 'MM'; horizontalAlignment: Text.AlignRight; verticalAlignment: "
         "Text.AlignBottom; ",
         {{"rightPadding", 30}, {"bottomPadding", 20}, {"verticalAlignment", "AlignTop"}}},
        {"TextEdit { text: 'MM'; ", {{"leftPadding", 30}, {"topPadding", 20}, {"text", "M"}}},
        {"TextEdit { text: 'MM'; horizontalAlignment: Text.AlignRight; verticalAlignment: Text.AlignBottom; ",
         {{"rightPadding", 30}, {"bottomPadding", 20}, {"text", "M"}}},
    };
    for (const Text& text : texts) {
        QmlScene scene(text.body + std::string("objectName: 'text'; width: 120; height: 80; color: 'red' }"));
        const auto window = platform_.windowOf(scene.window());
        for (const auto& [property, value] : text.changes) {
            SCOPED_TRACE(text.body + std::string(property));
            const QImage before = unmaskedPicture(*window);
            EXPECT_TRUE(QQmlProperty::write(&scene.object("text"), property, value));
            runFor(0.05);
            const QImage after = unmaskedPicture(*window);
            EXPECT_NE(after, before);
            expectNear(colored(after), colored(scene.window().grabWindow()));
        }
    }
}

TEST_F(QtUnmaskedItems, NoFunctionOfTheAppsRunsForAText) {
    QmlScene scene(
        "TextInput { objectName: 'text'; text: 'MMMM'; color: 'red'; property int asked: 0;"
        " function positionToRectangle(place: int): rect { asked += 1; return Qt.rect(0, 0, 1, 1) } }");
    EXPECT_FALSE(colored(pictureOf(scene)).isEmpty());
    EXPECT_EQ(scene.object("text").property("asked"), 0);
}

TEST_F(QtUnmaskedItems, AButtonShowsItsTextOnItsBackground) {
    expectAsShown("Button { x: 20; y: 20; width: 100; height: 40; text: 'MMMM'; palette.buttonText: 'red' }");
}

TEST_F(QtUnmaskedItems, APictureOfAFileIsFittedAsTheItemSays) {
    const test::TemporaryDirectory folder;
    QImage picture(40, 20, QImage::Format_RGB32);
    picture.fill(Qt::red);
    const QString file = QString::fromStdString((folder / "red.png").native());
    ASSERT_TRUE(picture.save(file));
    const std::string source = "source: 'file://" + file.toStdString() + "'; ";
    expectAsShown("Image { x: 10; y: 10; " + source + "}");
    expectAsShown("Image { x: 10; y: 10; width: 80; height: 80; " + source + "}");
    expectAsShown("Image { width: 80; height: 80; fillMode: Image.PreserveAspectFit; " + source + "}");
    expectAsShown("Image { x: 60; width: 80; height: 80; fillMode: Image.PreserveAspectCrop; clip: true; " +
                  source + "}");
    expectAsShown("Image { width: 80; height: 80; fillMode: Image.Pad; verticalAlignment: Image.AlignTop; " +
                  source + "}");
    expectAsShown("Image { width: 90; height: 70; fillMode: Image.Tile; " + source + "}");
    expectAsShown("BorderImage { width: 90; height: 70; border.left: 5; border.top: 5; " + source + "}");
}

/// Of a file whose picture is red above and blue below.
class QtUnmaskedImages : public QtUnmaskedItems {
  protected:
    QtUnmaskedImages() {
        QImage picture(40, 40, QImage::Format_RGB32);
        picture.fill(Qt::red);
        QPainter(&picture).fillRect(0, 20, 40, 20, Qt::blue);
        const QString file = QString::fromStdString((folder_ / "two.png").native());
        EXPECT_TRUE(picture.save(file));
        source_ = "width: 80; height: 80; source: 'file://" + file.toStdString() + "'; ";
    }
    void expectSamePoints(QmlScene& scene) {
        const QImage shown = scene.window().grabWindow();
        const QImage seen = pictureOf(scene);
        for (const QPoint point : {QPoint(40, 10), QPoint(40, 30), QPoint(40, 50), QPoint(40, 70)}) {
            EXPECT_EQ(QColor(seen.pixel(point)).name(), QColor(shown.pixel(point)).name()) << point.y();
        }
    }

    const test::TemporaryDirectory folder_;
    std::string source_;
};

TEST_F(QtUnmaskedImages, AreTurnedOverAndCutAsTheItemSays) {
    for (const char* const body :
         {"Image { mirrorVertically: true; ", "BorderImage { mirrorVertically: true; ",
          "Image { sourceClipRect: Qt.rect(0, 20, 40, 20); ",
          "Image { sourceClipRect: Qt.rect(0, 10, 40, 20); ",
          "Image { fillMode: Image.Tile; sourceClipRect: Qt.rect(0, 20, 40, 20); "}) {
        SCOPED_TRACE(body);
        QmlScene scene(body + source_ + "}");
        expectSamePoints(scene);
    }
}

TEST_F(QtUnmaskedImages, OfAPartOfAScaledPictureAreAPlainBlock) {
    const QImage seen =
        pictureOf("Image { sourceSize: '20x20'; sourceClipRect: Qt.rect(0, 0, 20, 10); " + source_ + "}");
    EXPECT_TRUE(isMaskBlock(seen.pixel(40, 40)));
}

TEST_F(QtUnmaskedImages, AreDrawnAnewWhenAnythingChangesThatTheyAreDrawnFrom) {
    QmlScene scene("Image { objectName: 'image'; " + source_ + "}" +
                   "BorderImage { x: 100; objectName: 'border'; border.left: 1; " + source_ + "}");
    const auto window = platform_.windowOf(scene.window());
    struct Change {
        const char* object;
        const char* property;
        QVariant value;
    };
    const std::vector<Change> changes{
        {"image", "mirrorVertically", true}, {"image", "sourceClipRect", QRectF(0, 15, 40, 10)},
        {"image", "smooth", false},          {"border", "verticalTileMode", 1},
        {"border", "border.top", 25},
    };
    for (const Change& change : changes) {
        const QImage before = unmaskedPicture(*window);
        EXPECT_TRUE(QQmlProperty::write(&scene.object(change.object), change.property, change.value));
        runFor(0.05);
        EXPECT_NE(unmaskedPicture(*window), before) << change.property;
    }
}

TEST_F(QtUnmaskedItems, APictureThatIsInNoFileIsAPlainBlock) {
    QBuffer bytes;
    QImage picture(8, 8, QImage::Format_RGB32);
    picture.fill(Qt::red);
    ASSERT_TRUE(picture.save(&bytes, "PNG"));
    QmlScene scene("Image { objectName: 'image'; width: 50; height: 50; source: 'data:image/png;base64," +
                   bytes.data().toBase64().toStdString() + "' }");
    constexpr int ready = 1;
    ASSERT_TRUE(runUntil([&] { return scene.object("image").property("status").toInt() == ready; }, 5));
    EXPECT_TRUE(isMaskBlock(pictureOf(scene).pixel(25, 25)));
}

TEST_F(QtUnmaskedItems, WhatCannotBeHadIsAPlainBlockWithItsChildrenOnIt) {
    const QImage seen = pictureOf(
        "Canvas { width: 80; height: 80; Rectangle { x: 20; y: 20; width: 20; height: 20; color: 'red' } }"
        "Rectangle { x: 100; width: 50; height: 60; color: 'black';"
        " transform: Rotation { axis { x: 0; y: 1; z: 0 } angle: 40 } }");
    EXPECT_TRUE(isMaskBlock(seen.pixel(10, 10)));
    EXPECT_TRUE(isNear(seen.pixel(30, 30), 255, 0, 0));
    EXPECT_TRUE(isMaskBlock(seen.pixel(120, 30)));
}

TEST_F(QtUnmaskedItems, ASwitchIsAsLargeAsTheWindowShowsIt) {
    expectAsShown("Switch { checked: true; palette.dark: 'red' }");
}

TEST_F(QtUnmaskedItems, AnItemWithALayerShowsWhatIsInIt) {
    const QImage seen = pictureOf(
        "Item { width: 80; height: 40; layer.enabled: true; Rectangle { width: 80; height: 40; color: 'red' "
        "} "
        "}");
    EXPECT_TRUE(isNear(seen.pixel(40, 20), 255, 0, 0));
}

TEST_F(QtUnmaskedItems, APictureFollowsItsItemsProperties) {
    QmlScene scene("Text { objectName: 'text'; text: 'MMMM'; color: 'red' }");
    const QImage before = pictureOf(scene);
    EXPECT_EQ(pictureOf(scene), before);
    scene.object("text").setProperty("text", "M");
    EXPECT_NE(pictureOf(scene), before);
}

TEST_F(QtUnmaskedItems, OfALongDocumentOnlyWhatIsInTheWindowIsDrawn) {
    const QImage seen = pictureOf(
        "Flickable { anchors.fill: parent; contentHeight: 1000000; contentY: 500000;"
        " Text { y: 0; width: 200; height: 1000000; verticalAlignment: Text.AlignVCenter;"
        " text: 'MMMM'; color: 'red' } }");
    EXPECT_FALSE(colored(seen).isEmpty());
}

TEST_F(QtUnmaskedItems, WhatIsMarkedAsMaskedIsAPlainBlock) {
    QmlScene scene("Text { objectName: 'text'; width: 80; height: 40; text: 'MMMM'; color: 'red' }");
    scene.object("text").setProperty("mirethMasked", true);
    EXPECT_TRUE(isMaskBlock(pictureOf(scene).pixel(40, 20)));
}

}  // namespace

}  // namespace mireth::qttest
