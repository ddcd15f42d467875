// Lists, tables, trees and paths of items.
#include "qt/galleries/ItemExhibit.hpp"

namespace mireth::qttest {

std::vector<ItemExhibit> viewItems() {
    return {
        {"ListView",
         "ListView { anchors.fill: parent; model: 20; header: Label { text: 'Secret' } section { property: "
         "'index';"
         " delegate: Label { text: 'Secret' } } highlight: Rectangle { color: 'grey' }"
         " delegate: Text { text: 'Secret ' + index; color: 'red' } }"},
        {"ScrollingListView",
         "ListView { anchors.fill: parent; model: 200; delegate: Text { text: 'Secret ' + index; color: "
         "'red' }"
         " NumberAnimation on contentY { to: 500; duration: 500 } }"},
        {"ListViewWithScrollBars",
         "ListView { anchors.fill: parent; model: 50; ScrollBar.vertical: ScrollBar { policy: "
         "ScrollBar.AlwaysOn }"
         " ScrollIndicator.horizontal: ScrollIndicator { }"
         " delegate: ItemDelegate { text: 'Secret'; width: 180; highlighted: index === 1 } }"},
        {"GridView",
         "GridView { anchors.fill: parent; model: 20; delegate: Text { text: 'Secret'; color: 'red' } }"},
        {"PathView",
         "PathView { anchors.fill: parent; model: 5; delegate: Text { text: 'Secret'; color: 'red' }"
         " path: Path { startX: 20; startY: 50; PathLine { x: 180; y: 50 } } }"},
        {"Repeater", "Column { Repeater { model: 3; Text { text: 'Secret'; color: 'red' } } }"},
        {"TableView",
         "TableView { anchors.fill: parent; model: 20; delegate: Item { implicitWidth: 60; implicitHeight: "
         "20;"
         " Text { text: 'Secret'; color: 'red' } } }"},
        {"TableViewWithHeaders",
         "HorizontalHeaderView { id: columns; syncView: table; x: 50; width: 150; height: 30 }"
         " VerticalHeaderView { id: rows; syncView: table; y: 30; width: 50; height: 70 }"
         " TableView { id: table; x: 50; y: 30; width: 150; height: 70; model: SecretTree { }"
         " delegate: Label { text: model.display; padding: 4 } }"},
        {"HorizontalHeaderView", "HorizontalHeaderView { width: 200; height: 40; model: SecretTree { } }",
         false},
        {"VerticalHeaderView", "VerticalHeaderView { width: 80; height: 90; model: SecretTree { } }", false},
        {"HeaderViewWithADelegate",
         "HorizontalHeaderView { width: 200; height: 40; model: SecretTree { }"
         " delegate: Text { text: 'Secret'; color: 'red' } }"},
        {"SelectedCells",
         "SelectionRectangle { target: cells; selectionMode: SelectionRectangle.Drag; topLeftHandle: Image { "
         "source: PICTURE }"
         " bottomRightHandle: Image { source: PICTURE } } TableView { id: cells; anchors.fill: parent;"
         " model: SecretTree { } selectionModel: ItemSelectionModel { model: cells.model }"
         " delegate: Label { required property bool selected; text: 'Secret'; padding: 8 } }"},
        {"TreeView",
         "TreeView { id: tree; anchors.fill: parent; model: SecretTree { } delegate: TreeViewDelegate { }"
         " Component.onCompleted: expandRecursively() }"},
        {"TreeViewWithADelegate",
         "TreeView { anchors.fill: parent; model: SecretTree { } delegate: Item { implicitWidth: 90; "
         "implicitHeight: 20;"
         " required property bool expanded; required property int depth; required property int hasChildren;"
         " required property bool isTreeNode; required property TreeView treeView;"
         " Text { text: 'Secret'; color: 'red' } } }"},
        {"Flickable",
         "Flickable { anchors.fill: parent; contentWidth: 400; contentHeight: 400; contentX: 10;"
         " Text { text: 'Secret secret secret'; color: 'red' } }"},
        {"FlickableThatOvershoots",
         "Flickable { anchors.fill: parent; contentHeight: 90; Text { text: 'Secret'; color: 'red' }"
         " NumberAnimation on contentY { from: 0; to: -40; duration: 200 } }"},
        {"ListModel",
         "ListView { anchors.fill: parent; model: ListModel { ListElement { name: 'Secret' } ListElement { "
         "name: 'Secret' } }"
         " delegate: SwipeDelegate { required property string name; text: name; width: 180 } }"},
    };
}

}  // namespace mireth::qttest
