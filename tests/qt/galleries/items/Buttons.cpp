// Buttons and whatever else can be clicked or checked.
#include "qt/galleries/ItemExhibit.hpp"

namespace mireth::qttest {

// A dot of an indicator is a rectangle in the colour of texts, which may shine through a block that is faint.
std::vector<ItemExhibit> buttonItems() {
    return {
        {"AbstractButton",
         "AbstractButton { width: 80; height: 30; text: 'Secret';"
         " contentItem: Text { text: parent.text; color: 'red' } background: Image { source: PICTURE } }"},
        {"Control", "Control { width: 80; height: 30; contentItem: Text { text: 'Secret'; color: 'red' } }"},
        {"Button", "Button { text: 'Secret'; icon.source: PICTURE; icon.color: 'transparent' }"},
        {"ButtonWithAnAction",
         "Button { action: Action { text: 'Secret'; icon.source: PICTURE; icon.color: 'transparent' } }"},
        {"IconButton",
         "Button { display: AbstractButton.IconOnly; icon.source: PICTURE; icon.color: 'transparent' }"},
        {"FlatButton", "Button { text: 'Secret'; flat: true }"},
        {"PressedButton", "Button { text: 'Secret'; down: true }"},
        {"HighlightedButton",
         "Button { text: 'Secret'; hoverEnabled: true; highlighted: true; palette.brightText: 'red' }"},
        {"CheckedButton",
         "Button { text: 'Secret'; checkable: true; checked: true; palette.brightText: 'red' }"},
        {"DisabledButton",
         "Button { text: 'Secret'; enabled: false; palette.disabled.buttonText: 'red';"
         " icon.source: PICTURE; icon.color: 'transparent' }"},
        {"RoundButton", "RoundButton { text: 'Secret' }"},
        {"ToolButton", "ToolButton { text: 'Secret'; icon.source: PICTURE; icon.color: 'transparent' }"},
        {"DelayButton", "DelayButton { text: 'Secret' }"},
        {"HalfPressedDelayButton", "DelayButton { text: 'Secret'; progress: 0.5 }"},
        {"CheckBox", "CheckBox { text: 'Secret'; checked: true }"},
        {"UncheckedCheckBox", "CheckBox { text: 'Secret' }"},
        {"PartlyCheckedBox",
         "CheckBox { text: 'Secret'; tristate: true; palette.text: 'grey'; checkState: Qt.PartiallyChecked "
         "}"},
        {"DisabledCheckBox",
         "CheckBox { text: 'Secret'; enabled: false; palette.disabled.windowText: 'red' }"},
        {"CheckBoxWithAnIndicator", "CheckBox { text: 'Secret'; indicator: Image { source: PICTURE } }"},
        {"RadioButton", "RadioButton { text: 'Secret'; checked: true; palette.text: 'grey' }"},
        {"RadioButtons",
         "Column { ButtonGroup { id: group } RadioButton { text: 'Secret'; ButtonGroup.group: group }"
         " RadioButton { text: 'Secret'; checked: true; palette.text: 'grey'; ButtonGroup.group: group } }"},
        {"Switch", "Switch { text: 'Secret'; checked: true }"},
        {"UncheckedSwitch", "Switch { text: 'Secret' }"},
        {"TabBar", "TabBar { TabButton { text: 'Secret' } TabButton { text: 'Secret' } }"},
        {"TabBarWithIcons",
         "TabBar { TabButton { text: 'Secret'; icon.source: PICTURE; icon.color: 'transparent' }"
         " TabButton { text: 'Secret'; enabled: false } }"},
        {"ItemDelegate",
         "ItemDelegate { width: 150; text: 'Secret'; icon.source: PICTURE; icon.color: 'transparent' }"},
        {"HighlightedItemDelegate", "ItemDelegate { text: 'Secret'; highlighted: true }"},
        {"CheckDelegate", "CheckDelegate { text: 'Secret'; checked: true }"},
        {"RadioDelegate",
         "RadioDelegate { text: 'Secret'; checked: true; palette.text: 'grey'; contentItem: Text { text: "
         "'Secret'; color: 'red' } }"},
        {"SwitchDelegate", "SwitchDelegate { text: 'Secret'; checked: true }"},
        {"SwipeDelegate", "SwipeDelegate { text: 'Secret' }"},
        {"SwipedDelegate",
         "SwipeDelegate { text: 'Secret'; width: 150; swipe.left: Label { text: 'Secret' }"
         " Component.onCompleted: swipe.open(SwipeDelegate.Left) }"},
        {"MenuItem", "MenuItem { text: 'Secret'; checkable: true; checked: true }"},
        {"MenuBarItem", "MenuBarItem { text: 'Secret' }"},
    };
}

}  // namespace mireth::qttest
