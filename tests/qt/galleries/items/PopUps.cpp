// Menus, dialogs and other pop-ups in the window, and windows above it.
#include "qt/galleries/ItemExhibit.hpp"

namespace mireth::qttest {

std::vector<ItemExhibit> popUpItems() {
    return {
        {"Menu", "Menu { visible: true; MenuItem { text: 'Secret' } Menu { title: 'Secret' } }"},
        {"MenuOfActions",
         "Menu { visible: true; Action { text: 'Secret'; icon.source: PICTURE; icon.color: 'transparent' }"
         " MenuSeparator { contentItem: Image { source: PICTURE } } }"},
        {"MenuOfCheckedItems",
         "Menu { visible: true; MenuItem { text: 'Secret'; checkable: true; checked: true;"
         " indicator: Image { source: PICTURE } } MenuItem { text: 'Secret'; enabled: false } }"},
        {"MenuBar",
         "MenuBar { width: 200; Menu { title: 'Secret' } Menu { title: 'Secret'; MenuItem { text: 'Secret' } "
         "} }"},
        {"ToolTip", "ToolTip { visible: true; contentItem: Text { text: 'Secret'; color: 'red' } }"},
        {"AttachedToolTip",
         "Label { y: 60; text: 'Secret'; ToolTip.text: '<font color=red>Secret</font>'; Timer { running: "
         "true; interval: 0; onTriggered: parent.ToolTip.visible = true } }"},
        {"Dialog",
         "Dialog { visible: true; title: 'Secret'; standardButtons: Dialog.Ok; Text { text: 'Secret'; color: "
         "'red' } }"},
        {"ModalDialog",
         "Dialog { visible: true; modal: true; title: 'Secret'; header: Label { text: 'Secret' } Text { "
         "text: 'Secret';"
         " color: 'red' } T.Overlay.modal: Image { source: PICTURE; fillMode: Image.Tile } }"},
        {"Drawer",
         "Drawer { width: 100; height: 100; visible: true; Text { text: 'Secret'; color: 'red' } }"},
        {"Popup", "Popup { visible: true; Text { text: 'Secret'; color: 'red' } }"},
        {"GrowingPopup",
         "Popup { visible: true; Text { text: 'Secret'; color: 'red' }"
         " enter: Transition { NumberAnimation { property: 'scale'; from: 0.2; to: 1; duration: 100 } } }"},
        {"WindowAbove",
         "Window { visible: true; width: 90; height: 50; Text { text: 'Secret'; color: 'red' }"
         " Image { y: 20; source: PICTURE } } Text { y: 60; text: 'Secret'; color: 'red' }"},
        {"ApplicationWindowAbove",
         "ApplicationWindow { visible: true; width: 180; height: 90; menuBar: MenuBar { Menu { title: "
         "'Secret' } }"
         " header: ToolBar { Label { text: 'Secret' } } footer: TabBar { TabButton { text: 'Secret' } }"
         " background: Image { source: PICTURE; fillMode: Image.Tile } Label { text: 'Secret' } }"
         " Text { x: 184; y: 40; text: 'Secret'; color: 'red' }"},
    };
}

}  // namespace mireth::qttest
