// Which taps in a window of items the library takes for dead ones.
#include <gtest/gtest.h>

#include <QFont>
#include <QTest>
#include <array>
#include <memory>
#include <string>

#include "MirethVex/Qt/QtPlatform.hpp"
#include "qt/support/QmlScene.hpp"
#include "qt/support/TapReaction.hpp"

namespace mireth::qttest {

namespace {

class QtItemTaps : public testing::Test {
  protected:
    /// `object` is what the scene calls "object".
    bool staysTheSame(QmlScene& scene, const char* property, const QVariant& value) {
        return isDead(scene, [&] { scene.object("object").setProperty(property, value); });
    }
    template <class Tap>
    bool isDead(QmlScene& scene, const Tap& tap) {
        return qttest::isDead(platform_.windowOf(scene.window()), tap);
    }

    const qt::QtPlatform platform_;
};

TEST_F(QtItemTaps, AProgressBarThatGrowsHasReacted) {
    QmlScene scene("ProgressBar { objectName: 'object' }");
    EXPECT_FALSE(staysTheSame(scene, "value", 0.5));
    EXPECT_TRUE(staysTheSame(scene, "value", 0.5));
}

TEST_F(QtItemTaps, AnItemThatIsDisabledHasReacted) {
    QmlScene scene("Button { objectName: 'object'; text: 'Buy' }");
    EXPECT_FALSE(staysTheSame(scene, "enabled", false));
}

/// A font that differs from the application's in one thing.
template <class Change>
QFont fontWith(Change change) {
    QFont font;
    change(font);
    return font;
}

TEST_F(QtItemTaps, ATextInAnotherFontHasReacted) {
    QmlScene scene("Text { objectName: 'object'; text: 'Buy'; anchors.fill: parent }");
    const std::array changed{fontWith([](QFont& font) { font.setBold(true); }),
                             fontWith([](QFont& font) { font.setPointSize(30); }),
                             fontWith([](QFont& font) { font.setPixelSize(30); }),
                             fontWith([](QFont& font) { font.setUnderline(true); }),
                             fontWith([](QFont& font) { font.setOverline(true); }),
                             fontWith([](QFont& font) { font.setStrikeOut(true); }),
                             fontWith([](QFont& font) { font.setKerning(false); }),
                             fontWith([](QFont& font) { font.setCapitalization(QFont::AllUppercase); }),
                             fontWith([](QFont& font) { font.setWordSpacing(3); }),
                             fontWith([](QFont& font) { font.setLetterSpacing(QFont::AbsoluteSpacing, 3); })};
    for (const QFont& font : changed) {
        scene.object("object").setProperty("font", QFont());
        EXPECT_FALSE(staysTheSame(scene, "font", font)) << font.toString().toStdString();
    }
    EXPECT_TRUE(staysTheSame(scene, "font", changed.back()));
}

TEST_F(QtItemTaps, AnEntryInAnotherFontHasReacted) {
    const QFont bold = fontWith([](QFont& font) { font.setBold(true); });
    for (const char* const type : {"TextInput", "TextEdit", "TextField", "TextArea"}) {
        QmlScene scene(type + std::string(" { objectName: 'object'; text: 'Buy' }"));
        EXPECT_FALSE(staysTheSame(scene, "font", bold)) << type;
        EXPECT_TRUE(staysTheSame(scene, "font", bold)) << type;
    }
}

TEST_F(QtItemTaps, ATextInAnotherColourHasReacted) {
    for (const char* const type : {"Text", "Label", "TextInput", "TextEdit", "TextField", "TextArea"}) {
        QmlScene scene(type + std::string(" { objectName: 'object'; text: 'Buy' }"));
        EXPECT_FALSE(staysTheSame(scene, "color", QColor(Qt::red))) << type;
        EXPECT_FALSE(staysTheSame(scene, "color", QColor(255, 0, 0, 99))) << type;
        EXPECT_TRUE(staysTheSame(scene, "color", QColor(255, 0, 0, 99))) << type;
    }
}

TEST_F(QtItemTaps, AnIconInAnotherColourHasReacted) {
    QmlScene scene(
        "Button { property color shade: 'grey'; objectName: 'object'; icon.color: shade;"
        " icon.source: 'data:image/svg+xml,' }");
    EXPECT_FALSE(staysTheSame(scene, "shade", QColor(Qt::yellow)));
    EXPECT_TRUE(staysTheSame(scene, "shade", QColor(Qt::yellow)));
}

TEST_F(QtItemTaps, ATextEntryWithAnotherTextHasReactedAndIsLeftAsItIs) {
    for (const char* const type : {"TextEdit", "TextArea"}) {
        QmlScene scene(type + std::string(" { objectName: 'object'; text: '4111' }"));
        const auto childrenBefore = scene.object("object").children().size();
        EXPECT_FALSE(staysTheSame(scene, "text", "4112")) << type;
        EXPECT_TRUE(staysTheSame(scene, "text", "4112")) << type;
        EXPECT_EQ(scene.object("object").children().size(), childrenBefore) << type;
    }
}

TEST_F(QtItemTaps, ATextEntryWithAnotherPlaceholderHasReacted) {
    for (const char* const type : {"TextField", "TextArea"}) {
        QmlScene scene(type + std::string(" { objectName: 'object'; placeholderText: 'a' }"));
        EXPECT_FALSE(staysTheSame(scene, "placeholderText", "b")) << type;
        EXPECT_TRUE(staysTheSame(scene, "placeholderText", "b")) << type;
    }
}

TEST_F(QtItemTaps, ACanvasThatPaintsAnewHasReacted) {
    QmlScene scene(
        "Canvas { id: canvas; objectName: 'object'; property color shade: 'red'; width: 50; height: 50;"
        " onShadeChanged: requestPaint();"
        " onPaint: { var context = getContext('2d'); context.fillStyle = shade;"
        " context.fillRect(0, 0, 50, 50) } }");
    (void)platform_.windowOf(scene.window())->subviews();
    runFor(0.1);
    EXPECT_FALSE(staysTheSame(scene, "shade", QColor(Qt::blue)));
    EXPECT_TRUE(staysTheSame(scene, "shade", QColor(Qt::blue)));
}

TEST_F(QtItemTaps, AGradientWithAnotherColourHasReacted) {
    QmlScene scene(
        "Rectangle { id: area; objectName: 'object'; property color first: 'red';"
        " width: 50; height: 50; gradient: Gradient {"
        " GradientStop { position: 0; color: area.first }"
        " GradientStop { position: 1; color: 'white' } } }");
    EXPECT_FALSE(staysTheSame(scene, "first", QColor(Qt::blue)));
    EXPECT_TRUE(staysTheSame(scene, "first", QColor(Qt::blue)));
}

TEST_F(QtItemTaps, WhatAnItemOutOfThePlaneHoldsMayReact) {
    QmlScene scene(
        "Item { width: 100; height: 100; transform: Rotation { axis { x: 0; y: 1; z: 0 } angle: 40 }"
        " Text { objectName: 'object'; text: 'a' } }");
    EXPECT_FALSE(staysTheSame(scene, "text", "b"));
    EXPECT_TRUE(staysTheSame(scene, "text", "b"));
}

TEST_F(QtItemTaps, WhatAMarkedItemHoldsMayReact) {
    QmlScene scene(
        "Item { objectName: 'marked'; width: 100; height: 100;"
        " Rectangle { objectName: 'object'; width: 10; height: 10; color: 'red' } }");
    scene.object("marked").setProperty("mirethMasked", true);
    EXPECT_FALSE(staysTheSame(scene, "x", 20));
    EXPECT_FALSE(staysTheSame(scene, "width", 40));
    EXPECT_FALSE(staysTheSame(scene, "color", QColor(Qt::blue)));
    EXPECT_FALSE(staysTheSame(scene, "visible", false));
    EXPECT_TRUE(isDead(scene, [&] { QTest::mouseClick(&scene.window(), Qt::LeftButton, {}, {20, 20}); }));
}

TEST_F(QtItemTaps, WhatLiesInAPictureMayReact) {
    QmlScene scene("Image { Text { objectName: 'object'; text: '1' } }");
    EXPECT_FALSE(staysTheSame(scene, "text", "2"));
}

TEST_F(QtItemTaps, ABlinkingTextCursorIsNoReaction) {
    QmlScene scene(
        "TextField { objectName: 'object'; text: 'a'; focus: true;"
        " cursorDelegate: Rectangle { id: cursor; width: 2; color: 'black';"
        " Timer { running: true; interval: 15; onTriggered: cursor.visible = !cursor.visible } } }");
    EXPECT_TRUE(isDead(scene, [] {}));
}

TEST_F(QtItemTaps, AClickOnAButtonThatDoesNothingIsDead) {
    QmlScene scene("Button { text: 'Buy'; width: 100; height: 50 }");
    EXPECT_TRUE(isDead(scene, [&] { QTest::mouseClick(&scene.window(), Qt::LeftButton, {}, {20, 20}); }));
}

TEST_F(QtItemTaps, HowAButtonLooksWhilePressedIsNoReaction) {
    QmlScene scene(
        "Button { id: button; text: 'Buy'; width: 100; height: 50; background: Rectangle {"
        " radius: button.down ? 8 : 2; gradient: Gradient {"
        " GradientStop { position: 0; color: button.down ? 'black' : 'white' }"
        " GradientStop { position: 1; color: 'grey' } } } }");
    const auto recorded = platform_.windowOf(scene.window());
    EXPECT_TRUE(isDeadClick(recorded, scene.window(), {20, 20}));
}

TEST_F(QtItemTaps, WhatReactsToThePressAlreadyHasReacted) {
    QmlScene scene("MouseArea { anchors.fill: parent; onPressed: label.text = 'b'; Text { id: label } }");
    const auto recorded = platform_.windowOf(scene.window());
    EXPECT_FALSE(isDeadClick(recorded, scene.window(), {20, 20}));
    EXPECT_TRUE(isDeadClick(recorded, scene.window(), {20, 20}));
}

}  // namespace

}  // namespace mireth::qttest
