// Every control of Qt Quick Controls with text and pictures in saturated colours, on grey: not one pixel of
// them may be in the recorded picture, while the window itself shows them.
#include <gtest/gtest.h>

#include <QBuffer>
#include <QPainter>
#include <QPixmap>
#include <QQuickPaintedItem>
#include <QtQml>
#include <tuple>

#include "MirethVex/Qt/QtPlatform.hpp"
#include "qt/support/Pictures.hpp"
#include "qt/support/QmlScene.hpp"

namespace mireth::qttest {

namespace {

class PaintedItem : public QQuickPaintedItem {
    Q_OBJECT
  public:
    void paint(QPainter* painter) override { painter->fillRect(QRect(0, 0, 500, 500), Qt::red); }
};

/// As the source of an Image.
std::string canaryPicture() {
    QImage picture(16, 16, QImage::Format_RGB32);
    picture.fill(QColor(0, 200, 0));
    QByteArray bytes;
    QBuffer buffer(&bytes);
    picture.save(&buffer, "PNG");
    return "'data:image/png;base64," + bytes.toBase64().toStdString() + "'";
}

QImage pictureOf(QQuickWindow& window) {
    QImage picture = window.grabWindow();
    // The software scene graph does not say it at every scale factor.
    picture.setDevicePixelRatio(static_cast<double>(picture.width()) / window.width());
    return picture;
}

struct Exhibit {
    std::string name;
    std::string body;
    /// False for what the software scene graph does not draw at every scale factor.
    bool showsCanary = true;
};

std::ostream& operator<<(std::ostream& out, const Exhibit& exhibit) {
    return out << exhibit.name;
}

const std::vector<Exhibit> gallery{
    {"Text", "Text { text: 'Secret'; color: 'red' }"},
    {"RichText", "Text { text: \"<b>Secret</b><img src=PICTURE>\"; color: 'red' }"},
    {"OverflowingText", "Text { width: 5; text: 'Secret secret secret'; color: 'red' }"},
    {"TurnedText", "Text { x: 90; y: 40; text: 'Secret'; color: 'red'; rotation: 30; scale: 2 }"},
    {"TextInput", "TextInput { text: 'Secret'; color: 'red' }"},
    {"TextEdit", "TextEdit { text: 'Secret'; color: 'red' }"},
    {"Label", "Label { text: 'Secret' }"},
    {"TextField", "TextField { text: 'Secret' }"},
    {"Placeholder", "TextField { placeholderText: 'Secret' }"},
    {"FilledTextField", "TextField { text: 'Secret'; focus: true; Component.onCompleted: selectAll() }"},
    {"TextArea", "TextArea { text: 'Secret' }"},
    {"ScrolledTextArea",
     "ScrollView { width: 100; height: 50; TextArea { text: 'Secret\\nSecret\\nSecret' } }"},
    {"Image", "Image { source: PICTURE; width: 50; height: 50 }"},
    {"BorderImage", "BorderImage { source: PICTURE; width: 50; height: 50 }"},
    {"ImageAnimation", "Image { source: PICTURE; NumberAnimation on x { to: 100; duration: 500 } }"},
    {"Button", "Button { text: 'Secret'; icon.source: PICTURE; icon.color: 'transparent' }"},
    {"FlatButton", "Button { text: 'Secret'; flat: true }"},
    {"PressedButton", "Button { text: 'Secret'; down: true }"},
    {"DisabledButton", "Button { text: 'Secret'; enabled: false; palette.disabled.buttonText: 'red' }"},
    {"RoundButton", "RoundButton { text: 'Secret' }"},
    {"ToolButton", "ToolButton { text: 'Secret' }"},
    {"DelayButton", "DelayButton { text: 'Secret' }"},
    {"CheckBox", "CheckBox { text: 'Secret'; checked: true }"},
    {"RadioButton", "RadioButton { text: 'Secret'; checked: true }"},
    {"Switch", "Switch { text: 'Secret'; checked: true }"},
    {"TabBar", "TabBar { TabButton { text: 'Secret' } TabButton { text: 'Secret' } }"},
    {"ComboBox", "ComboBox { model: ['Secret', 'Secret'] }"},
    {"OpenComboBox", "ComboBox { model: ['Secret', 'Secret']; Component.onCompleted: popup.open() }"},
    {"EditableComboBox", "ComboBox { editable: true; model: ['Secret'] }"},
    {"SpinBox", "SpinBox { value: 42; up.indicator: Item { } down.indicator: Item { } }"},
    {"Tumbler", "Tumbler { model: 10; height: 90 }"},
    {"GroupBox", "GroupBox { title: 'Secret'; Slider { } }"},
    {"Page",
     "Page { anchors.fill: parent; title: 'Secret'; header: Label { text: 'Secret' } footer: Label { text: "
     "'Secret' } }"},
    {"ToolBar", "ToolBar { width: 200; ToolButton { text: 'Secret' } }"},
    {"ItemDelegate", "ItemDelegate { width: 150; text: 'Secret'; icon.source: PICTURE }"},
    {"CheckDelegate", "CheckDelegate { text: 'Secret' }"},
    {"RadioDelegate", "RadioDelegate { text: 'Secret' }"},
    {"SwitchDelegate", "SwitchDelegate { text: 'Secret' }"},
    {"SwipeDelegate", "SwipeDelegate { text: 'Secret' }"},
    {"ListView",
     "ListView { anchors.fill: parent; model: 20; delegate: Text { text: 'Secret ' + index; color: 'red' } "
     "}"},
    {"ScrollingListView",
     "ListView { anchors.fill: parent; model: 200; delegate: Text { text: 'Secret ' + index; color: 'red' } "
     "NumberAnimation on contentY { to: 500; duration: 500 } }"},
    {"GridView",
     "GridView { anchors.fill: parent; model: 20; delegate: Text { text: 'Secret'; color: 'red' } }"},
    {"PathView",
     "PathView { anchors.fill: parent; model: 5; delegate: Text { text: 'Secret'; color: 'red' } path: Path "
     "{ startX: 20; startY: 50; PathLine { x: 180; y: 50 } } }"},
    {"Repeater", "Column { Repeater { model: 3; Text { text: 'Secret'; color: 'red' } } }"},
    {"Loader", "Loader { sourceComponent: Text { text: 'Secret'; color: 'red' } }"},
    {"StackView", "StackView { anchors.fill: parent; initialItem: Text { text: 'Secret'; color: 'red' } }"},
    {"SwipeView",
     "SwipeView { anchors.fill: parent; Text { text: 'Secret'; color: 'red' } Text { text: 'Secret' } }"},
    {"Flipable", "Flipable { width: 50; height: 50; front: Text { text: 'Secret'; color: 'red' } }"},
    {"Menu", "Menu { visible: true; MenuItem { text: 'Secret' } Menu { title: 'Secret' } }"},
    {"MenuBar", "MenuBar { width: 200; Menu { title: 'Secret' } }"},
    {"ToolTip", "ToolTip { visible: true; contentItem: Text { text: 'Secret'; color: 'red' } }"},
    {"Dialog",
     "Dialog { visible: true; title: 'Secret'; standardButtons: Dialog.Ok; Text { text: 'Secret'; color: "
     "'red' } }"},
    {"Drawer", "Drawer { width: 100; height: 100; visible: true; Text { text: 'Secret'; color: 'red' } }"},
    {"Popup", "Popup { visible: true; Text { text: 'Secret'; color: 'red' } }"},
    {"HoveredButton", "Button { text: 'Secret'; hoverEnabled: true; highlighted: true }"},
    {"CheckedButton", "Button { text: 'Secret'; checkable: true; checked: true }"},
    {"UncheckedCheckBox", "CheckBox { text: 'Secret' }"},
    {"PartlyCheckedBox", "CheckBox { text: 'Secret'; tristate: true; checkState: Qt.PartiallyChecked }"},
    {"DisabledCheckBox", "CheckBox { text: 'Secret'; enabled: false; palette.disabled.windowText: 'red' }"},
    {"DisabledTextField", "TextField { text: 'Secret'; enabled: false; palette.disabled.text: 'red' }"},
    {"RefusedTextField", "TextField { text: 'Secret'; validator: IntValidator { } focus: true }"},
    {"PasswordField", "TextField { text: 'Secret'; echoMode: TextInput.Password }"},
    {"HighlightedItemDelegate", "ItemDelegate { text: 'Secret'; highlighted: true }"},
    {"DialogButtonBox", "DialogButtonBox { width: 200; standardButtons: Dialog.Ok | Dialog.Cancel }"},
    {"SplitView",
     "SplitView { anchors.fill: parent; Text { text: 'Secret'; color: 'red' } Text { text: 'Secret' } }"},
    {"TableView",
     "TableView { anchors.fill: parent; model: 20; delegate: Item { implicitWidth: 60; implicitHeight: 20;"
     " Text { text: 'Secret'; color: 'red' } } }"},
    {"MonthGrid", "MonthGrid { width: 200; height: 100; delegate: Text { text: model.day; color: 'red' } }"},
    {"DayOfWeekRow", "DayOfWeekRow { width: 200; delegate: Text { text: model.shortName; color: 'red' } }"},
    {"WeekNumberColumn",
     "WeekNumberColumn { height: 100; delegate: Text { text: model.weekNumber; color: 'red' } }"},
    {"AnimatedImage", "AnimatedImage { source: PICTURE; width: 50; height: 50 }"},
    {"Canvas",
     "Canvas { width: 50; height: 50; onPaint: { var c = getContext('2d'); c.fillStyle = 'red'; "
     "c.fillRect(0, 0, 50, 50) } }"},
    {"PaintedItem", "PaintedItem { width: 50; height: 50 }"},
    {"EffectSource",
     "Text { id: secret; text: 'Secret'; color: 'red' } ShaderEffectSource { sourceItem: secret; y: 40; "
     "width: 50; height: 20 }"},
    {"LayeredText",
     "Item { width: 80; height: 40; layer.enabled: true; Text { text: 'Secret'; color: 'red' } }", false},
    {"TextBehindItsParent",
     "Rectangle { width: 20; height: 90; color: 'grey'; Text { z: -1; text: 'Secret secret'; color: 'red' } "
     "}"},
    {"TextInMouseArea", "MouseArea { width: 90; height: 90; Text { text: 'Secret'; color: 'red' } }"},
    {"TextUnderCover",
     "Text { text: 'Secret'; color: 'red' } Rectangle { width: 5; height: 5; color: 'grey' }"},
};

/// In each of the styles of Qt Quick Controls.
class QtItemGallery : public testing::TestWithParam<std::tuple<const char*, Exhibit>> {
  protected:
    static void SetUpTestSuite() { qmlRegisterType<PaintedItem>("Gallery", 1, 0, "PaintedItem"); }

    static std::string replaced(std::string text, const std::string& what, const std::string& with) {
        for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size())) {
            text.replace(at, what.size(), with);
        }
        return text;
    }

    /// What each style draws texts in is red, and what it draws controls in is grey.
    static std::string colors() {
        constexpr const char* palette =
            "palette { windowText: 'red'; text: 'red'; buttonText: 'red'; brightText: 'red';"
            " highlightedText: 'red'; placeholderText: 'red'; link: 'red';"
            " highlight: '#808080' }\n";
        if (style() == "Material" || style() == "Universal") {
            return palette + style() + ".foreground: 'red'\n" + style() + ".accent: '#808080'\n";
        }
        return palette;
    }

    static std::string sceneOf(const Exhibit& exhibit) {
        return colors() + replaced(exhibit.body, "PICTURE", canaryPicture());
    }

    static std::string style() { return std::get<0>(GetParam()); }
    static const Exhibit& exhibit() { return std::get<1>(GetParam()); }
    /// The others take the colours of texts from elsewhere than from the palette.
    static bool showsCanary() { return exhibit().showsCanary && (style() == "Basic" || style() == "Fusion"); }

    const qt::QtPlatform platform_;
};

TEST_P(QtItemGallery, ShowsNoCanary) {
    QmlScene scene(sceneOf(exhibit()), {}, "import Gallery", style());
    const auto recorded = platform_.windowOf(scene.window());
    const auto isMasked = [&] { return isMaskedAt(recordedPicture(*recorded), pictureOf(scene.window())); };
    EXPECT_TRUE(!showsCanary() || runUntil(isMasked, 5)) << "the exhibit itself is to show it";
    for (int sample = 0; sample < 3; ++sample) {
        EXPECT_EQ(findCanary(recordedPicture(*recorded)), std::nullopt);
        runFor(0.005);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Controls, QtItemGallery,
    testing::Combine(testing::Values("Basic", "Fusion", "Imagine", "Material", "Universal"),
                     testing::ValuesIn(gallery)),
    [](const auto& shown) { return std::get<0>(shown.param) + std::get<1>(shown.param).name; });

}  // namespace

}  // namespace mireth::qttest

#include "ItemGalleryTest.moc"
