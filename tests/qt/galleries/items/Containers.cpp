// What holds other items: pages, panes, layouts, loaders.
#include "qt/galleries/ItemExhibit.hpp"

namespace mireth::qttest {

std::vector<ItemExhibit> containerItems() {
    return {
        {"GroupBox", "GroupBox { title: 'Secret'; Slider { } }"},
        {"DisabledGroupBox",
         "GroupBox { title: 'Secret'; enabled: false; palette.disabled.windowText: 'red'; Slider { } }"},
        {"Frame",
         "Frame { background: Image { source: PICTURE; fillMode: Image.Tile } Label { text: 'Secret' } }"},
        {"Pane", "Pane { Column { Label { text: 'Secret' } } }"},
        {"Container",
         "Container { id: box; width: 90; height: 40; contentItem: Row { Repeater { model: box.contentModel "
         "} }"
         " Text { text: 'Secret'; color: 'red' } }"},
        {"Page",
         "Page { anchors.fill: parent; title: 'Secret'; header: Label { text: 'Secret' }"
         " footer: Label { text: 'Secret' } }"},
        {"ToolBar",
         "ToolBar { width: 200; Row { ToolButton { text: 'Secret' } ToolSeparator { contentItem: Image { "
         "source: PICTURE } }"
         " ToolButton { text: 'Secret'; checkable: true; checked: true } } }"},
        {"DialogButtonBox", "DialogButtonBox { width: 200; standardButtons: Dialog.Ok | Dialog.Cancel }"},
        {"StackView",
         "StackView { anchors.fill: parent; initialItem: Text { text: 'Secret'; color: 'red' } }"},
        {"SwipeView",
         "SwipeView { anchors.fill: parent; Text { text: 'Secret'; color: 'red' } Text { text: 'Secret' } }"},
        {"SwipingView",
         "SwipeView { anchors.fill: parent; Text { text: 'Secret'; color: 'red' } Text { text: 'Secret'; "
         "color: 'red' }"
         " Timer { running: true; interval: 1; onTriggered: parent.currentIndex = 1 } }"},
        {"SplitView",
         "SplitView { anchors.fill: parent; Text { text: 'Secret'; color: 'red' } Text { text: 'Secret' } }"},
        {"SplitViewWithHandles",
         "SplitView { anchors.fill: parent; handle: Item { implicitWidth: 10; Image { source: PICTURE } }"
         " Item { SplitView.preferredWidth: 50 } Item { } }"},
        {"ScrollView",
         "ScrollView { anchors.fill: parent; contentWidth: 400; contentHeight: 400;"
         " Text { text: 'Secret'; color: 'red' } }"},
        {"Loader", "Loader { sourceComponent: Text { text: 'Secret'; color: 'red' } }"},
        {"FocusScope", "FocusScope { width: 90; height: 90; TextField { text: 'Secret'; focus: true } }"},
        {"Flipable", "Flipable { width: 50; height: 50; front: Text { text: 'Secret'; color: 'red' } }"},
        {"FlippingFlipable",
         "Flipable { id: card; width: 80; height: 50; front: Text { text: 'Secret'; color: 'red' }"
         " back: Image { source: PICTURE } transform: Rotation { origin.x: 40; axis { x: 0; y: 1; z: 0 }"
         " NumberAnimation on angle { from: 0; to: 180; duration: 300 } } }"},
        {"Positioners",
         "Column { Row { Text { text: 'Secret'; color: 'red' } } Grid { Text { text: 'Secret'; color: 'red' "
         "} }"
         " Flow { Text { text: 'Secret'; color: 'red' } } }"},
        {"Layouts",
         "ColumnLayout { anchors.fill: parent; RowLayout { Label { text: 'Secret'; Layout.fillWidth: true } }"
         " GridLayout { columns: 2; Label { text: 'Secret' } Label { text: 'Secret' } }"
         " StackLayout { currentIndex: 1; Label { text: 'Secret' } Label { text: 'Secret' } } }"},
        {"Areas",
         "MultiPointTouchArea { width: 90; height: 90; PinchArea { width: 90; height: 90; DropArea { width: "
         "90; height: 90;"
         " Text { text: 'Secret'; color: 'red' } } } }"},
        {"DraggedText",
         "Text { id: dragged; text: 'Secret'; color: 'red'; Drag.active: true; DragHandler { } HoverHandler "
         "{ } }"},
        {"ItemInALowerPlace", "Item { y: 60; z: -2; Text { text: 'Secret'; color: 'red' } }"},
    };
}

}  // namespace mireth::qttest
