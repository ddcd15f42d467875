// Fields, and controls that stand for a value.
#include "qt/galleries/ItemExhibit.hpp"

namespace mireth::qttest {

std::vector<ItemExhibit> inputItems() {
    return {
        {"TextField", "TextField { text: 'Secret' }"},
        {"Placeholder", "TextField { placeholderText: 'Secret'; placeholderTextColor: 'red' }"},
        {"FilledTextField", "TextField { text: 'Secret'; focus: true; Component.onCompleted: selectAll() }"},
        {"DisabledTextField", "TextField { text: 'Secret'; enabled: false; palette.disabled.text: 'red' }"},
        {"ReadOnlyTextField", "TextField { text: 'Secret'; readOnly: true }"},
        {"RefusedTextField", "TextField { text: 'Secret'; validator: IntValidator { } focus: true }"},
        {"PasswordField", "TextField { text: 'Secret'; echoMode: TextInput.Password }"},
        {"TextArea", "TextArea { text: 'Secret' }"},
        {"TextAreaPlaceholder", "TextArea { placeholderText: 'Secret'; placeholderTextColor: 'red' }"},
        {"ScrolledTextArea",
         "ScrollView { width: 100; height: 50; TextArea { text: 'Secret\\nSecret\\nSecret' } }"},
        {"ComboBox", "ComboBox { model: ['Secret', 'Secret'] }"},
        {"OpenComboBox", "ComboBox { model: ['Secret', 'Secret']; Component.onCompleted: popup.open() }"},
        {"EditableComboBox", "ComboBox { editable: true; model: ['Secret'] }"},
        {"DisabledComboBox",
         "ComboBox { model: ['Secret']; enabled: false;"
         " palette.disabled { buttonText: 'red'; text: 'red'; windowText: 'red' } }"},
        {"SpinBox", "SpinBox { value: 42; up.indicator: Item { } down.indicator: Item { } }"},
        {"SpinBoxWithIndicators",
         "SpinBox { value: 42; editable: true; up.indicator: Text { text: 'Secret'; color: 'red' }"
         " down.indicator: Image { source: PICTURE } }"},
        {"Tumbler", "Tumbler { model: 10; height: 90 }"},
        {"Slider", "Slider { value: 0.5; handle: Image { x: 60; source: PICTURE } }"},
        {"SliderWithABackground",
         "Slider { value: 0.5; background: Text { text: 'Secret secret'; color: 'red' } }"},
        {"RangeSlider",
         "RangeSlider { first.handle: Image { source: PICTURE } second.handle: Text { x: 90; text: 'Secret'; "
         "color: 'red' } }"},
        {"Dial",
         "Dial { height: 90; background: Image { source: PICTURE } handle: Text { text: 'Secret'; color: "
         "'red' } }"},
        {"ProgressBar", "ProgressBar { value: 0; background: Text { text: 'Secret'; color: 'red' } }"},
        {"ProgressBarWithContents",
         "ProgressBar { width: 150; value: 0.5; contentItem: Text { text: 'Secret'; color: 'red' } }"},
        {"RunningProgressBar",
         "ProgressBar { width: 150; indeterminate: true; contentItem: Item { implicitHeight: 20; Image { "
         "source: PICTURE } } }"},
        {"BusyIndicator",
         "BusyIndicator { contentItem: Image { source: PICTURE; RotationAnimation on rotation { to: 360 } } "
         "}"},
        {"ScrollBar",
         "ScrollBar { size: 0.5; width: 150; height: 20; orientation: Qt.Horizontal; policy: "
         "ScrollBar.AlwaysOn;"
         " contentItem: Image { source: PICTURE; fillMode: Image.Tile } }"},
        {"ScrollIndicator",
         "ScrollIndicator { size: 0.5; width: 150; height: 20; orientation: Qt.Horizontal; active: true;"
         " contentItem: Image { source: PICTURE; fillMode: Image.Tile } }"},
        {"PageIndicator", "PageIndicator { count: 3; delegate: Text { text: 'Secret'; color: 'red' } }"},
        {"MonthGrid",
         "MonthGrid { width: 200; height: 100; delegate: Text { text: model.day; color: 'red' } }"},
        {"DayOfWeekRow",
         "DayOfWeekRow { width: 200; delegate: Text { text: model.shortName; color: 'red' } }"},
        {"WeekNumberColumn",
         "WeekNumberColumn { height: 100; delegate: Text { text: model.weekNumber; color: 'red' } }"},
        {"PlainCalendar",
         "Column { DayOfWeekRow { width: 200 } Row { WeekNumberColumn { height: 70 } MonthGrid { width: 150; "
         "height: 70 } } }",
         false},
    };
}

}  // namespace mireth::qttest
