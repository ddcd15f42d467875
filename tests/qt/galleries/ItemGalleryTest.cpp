// Every control of Qt Quick Controls, in each of its styles and states, with text and pictures in saturated
// colours, on grey: not one pixel of them may be in what is recorded, while the window itself shows them.
#include <gtest/gtest.h>

#include <QQuickItem>
#include <QTest>
#include <algorithm>
#include <functional>
#include <tuple>

#include "MirethVex/Qt/QtPlatform.hpp"
#include "qt/galleries/Canaries.hpp"
#include "qt/galleries/ItemExhibit.hpp"
#include "qt/galleries/WatchedExhibit.hpp"
#include "qt/support/QmlScene.hpp"

namespace mireth::qttest {

namespace {

std::string replaced(std::string text, const std::string& what, const std::string& with) {
    for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size())) {
        text.replace(at, what.size(), with);
    }
    return text;
}

/// What each style draws texts in is red, and what it draws controls in is grey.
std::string colors(const std::string& style) {
    constexpr const char* palette =
        "palette { windowText: 'red'; text: 'red'; buttonText: 'red'; brightText: 'red';"
        " highlightedText: 'red'; placeholderText: 'red'; link: 'red';"
        " highlight: '#808080'; toolTipBase: 'white' }\n";
    if (style == "Material" || style == "Universal") {
        return palette + style + ".foreground: 'red'\n" + style + ".accent: '#808080'\n";
    }
    return palette;
}

std::string sceneOf(const std::string& body, const std::string& style) {
    return colors(style) + replaced(replaced(body, "COLORS", colors(style)), "PICTURE", canaryUrl());
}

constexpr const char* imports =
    "import QtQuick.Shapes\nimport QtQuick.Templates as T\nimport QtQml.Models\nimport Gallery";

QImage pictureOf(QQuickWindow& window) {
    QImage picture = window.grabWindow();
    // The software scene graph does not say it at every scale factor.
    picture.setDevicePixelRatio(static_cast<double>(picture.width()) / window.width());
    return picture;
}

/// The item that is shown: the window's first one, or the pop-up that is open in it.
QQuickItem* shownItem(const QQuickWindow& window) {
    QQuickItem* item = nullptr;
    for (QQuickItem* const candidate : window.contentItem()->childItems()) {
        const bool isOverlay = candidate->inherits("QQuickOverlay");
        if (item == nullptr && isOverlay && !candidate->childItems().isEmpty()) {
            return candidate->childItems().last();
        }
        if (item == nullptr && !isOverlay) {
            item = candidate;
        }
    }
    return item;
}

QPoint middleOf(const QQuickItem& item, const QQuickWindow& window) {
    const QPoint middle = item.mapToScene(QPointF(item.width() / 2, item.height() / 2)).toPoint();
    return {std::clamp(middle.x(), 1, window.width() - 2), std::clamp(middle.y(), 1, window.height() - 2)};
}

/// What a user does with a control, one thing after the other.
void use(QQuickWindow& window, WatchedExhibit& watched) {
    watched.look("as it is");
    const QPointer<QQuickItem> item = shownItem(window);
    if (item == nullptr) {
        return;
    }
    const QPoint middle = middleOf(*item, window);
    QTest::mouseMove(&window, middle);
    watched.look("hovered");
    QTest::mousePress(&window, Qt::LeftButton, {}, middle);
    watched.look("pressed");
    QTest::mouseRelease(&window, Qt::LeftButton, {}, middle);
    watched.look("clicked");
    QTest::keyClick(&window, Qt::Key_Tab);
    watched.look("reached by a key");
    if (item != nullptr) {
        item->forceActiveFocus(Qt::TabFocusReason);
    }
    QTest::keyClick(&window, Qt::Key_X);
    watched.look("written into");
    if (item != nullptr) {
        item->setEnabled(false);
    }
    watched.look("disabled");
}

/// What moves may look otherwise a moment later.
bool happens(const std::function<bool()>& condition) {
    bool hasHappened = false;
    runUntil([&] { return hasHappened = hasHappened || condition(); }, 5);
    return hasHappened;
}

}  // namespace

class QtItemGallery : public testing::TestWithParam<std::tuple<const char*, ItemExhibit>> {
  protected:
    static void SetUpTestSuite() { registerGalleryTypes(); }

    static std::string style() { return std::get<0>(GetParam()); }
    static const ItemExhibit& exhibit() { return std::get<1>(GetParam()); }
    /// The others take the colours of texts from elsewhere than from the palette.
    static bool showsCanary() { return exhibit().showsCanary && (style() == "Basic" || style() == "Fusion"); }

    const qt::QtPlatform platform_;
};

TEST_P(QtItemGallery, ShowsNoCanaryInAnyState) {
    QmlScene scene(sceneOf(exhibit().body, style()), {}, imports, style());
    const auto recorded = platform_.windowOf(scene.window());
    const auto isMasked = [&] {
        const QImage picture = recordedPicture(*recorded);
        return showsCanary() ? isMaskedAt(picture, pictureOf(scene.window())) : hasMask(picture);
    };
    EXPECT_TRUE(happens(isMasked)) << "the exhibit itself is to show it, and then a block";
    // One style is enough to see that the video holds what the frames hold.
    WatchedExhibit watched(recorded, style() == "Basic");
    use(scene.window(), watched);
    watched.expectNoCanaryInTheVideo();
}

INSTANTIATE_TEST_SUITE_P(
    Controls, QtItemGallery,
    testing::Combine(testing::Values("Basic", "Fusion", "Imagine", "Material", "Universal"),
                     testing::ValuesIn(itemExhibits())),
    [](const auto& shown) { return std::get<0>(shown.param) + std::get<1>(shown.param).name; });

namespace {

/// Where an exhibit stands, or what happens to it: QML with BODY in it.
struct Situation {
    std::string name;
    std::string qml;
};

std::ostream& operator<<(std::ostream& out, const Situation& situation) {
    return out << situation.name;
}

const std::vector<Situation> situations{
    {"Scrolling",
     "Flickable { anchors.fill: parent; contentHeight: 300; Item { width: 200; height: 100; BODY }"
     " NumberAnimation on contentY { from: 0; to: 60; duration: 120; loops: Animation.Infinite } }"},
    {"Turning",
     "Item { width: 200; height: 100; BODY\n"
     " RotationAnimation on rotation { from: 0; to: 360; duration: 400; loops: Animation.Infinite }"
     " NumberAnimation on scale { from: 0.7; to: 1.5; duration: 150; loops: Animation.Infinite } }"},
    {"Fading",
     "Item { width: 200; height: 100; BODY\n"
     " NumberAnimation on opacity { from: 1; to: 0.3; duration: 150; loops: Animation.Infinite } }"},
    {"OnANewPage",
     "StackView { anchors.fill: parent; initialItem: Item { } Component { id: page; Item { BODY } }"
     " Component.onCompleted: push(page) }"},
    {"InAPopUp",
     "Popup { visible: true; padding: 0; width: 200; height: 100; Item { anchors.fill: parent; BODY } }"},
    {"InAnApplicationWindow",
     "ApplicationWindow { COLORS objectName: 'recorded'; visible: true; width: 200; height: 220; header: "
     "ToolBar { }"
     " menuBar: MenuBar { } footer: Pane { } BODY }"},
    {"RightToLeft",
     "Item { width: 200; height: 100; LayoutMirroring.enabled: true; LayoutMirroring.childrenInherit: true; "
     "BODY }"},
};

}  // namespace

class QtItemGallerySituation : public testing::TestWithParam<std::tuple<Situation, ItemExhibit>> {
  protected:
    static void SetUpTestSuite() { registerGalleryTypes(); }

    const qt::QtPlatform platform_;
};

TEST_P(QtItemGallerySituation, ShowsNoCanary) {
    const auto& [situation, exhibit] = GetParam();
    QmlScene scene(sceneOf(replaced(situation.qml, "BODY", exhibit.body), "Basic"), {}, imports);
    auto* window = &scene.window();
    if (auto* const inner = window->findChild<QQuickWindow*>("recorded")) {
        window = inner;
    }
    WatchedExhibit watched(platform_.windowOf(*window));
    watched.look("at once");
    const auto isShown = [&] { return findCanary(window->grabWindow()).has_value(); };
    EXPECT_TRUE(!exhibit.showsCanary || happens(isShown)) << "the exhibit itself is to show it";
    watched.look("shown");
    runFor(0.02);
    watched.look("a little later");
    watched.expectNoCanaryInTheVideo();
}

INSTANTIATE_TEST_SUITE_P(Controls, QtItemGallerySituation,
                         testing::Combine(testing::ValuesIn(situations), testing::ValuesIn(itemExhibits())),
                         [](const auto& shown) {
                             return std::get<0>(shown.param).name + std::get<1>(shown.param).name;
                         });

}  // namespace mireth::qttest
