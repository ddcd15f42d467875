#include "platforms/qt/objects/ClassState.hpp"

#include <QMetaProperty>
#include <algorithm>
#include <array>
#include <string_view>

#include "platforms/qt/objects/ClassCatalog.hpp"

namespace mireth::qt {

namespace {

constexpr auto stateNames = std::to_array<std::string_view>(
    {"text", "title", "value", "checkState", "checked", "currentIndex", "source", "windowTitle", "pixmap",
     "icon", "selectedDate", "font", "keySequence", "placeholderText", "color", "currentText", "mirror"});

/// The classes of Qt's that declare them. Their getters run nothing of the app's.
constexpr auto statefulWidgets =
    std::to_array<std::string_view>({"QAbstractButton", "QAbstractSlider", "QAbstractSpinBox",
                                     "QCalendarWidget", "QComboBox",       "QDockWidget",
                                     "QDoubleSpinBox",  "QGroupBox",       "QKeySequenceEdit",
                                     "QLCDNumber",      "QLabel",          "QLineEdit",
                                     "QMenu",           "QPlainTextEdit",  "QProgressBar",
                                     "QSpinBox",        "QStackedWidget",  "QTabBar",
                                     "QTabWidget",      "QTextEdit"});
constexpr auto statefulItems = std::to_array<std::string_view>(
    {"QQuickAbstractButton", "QQuickCanvasItem", "QQuickCheckBox",  "QQuickCheckDelegate", "QQuickColorImage",
     "QQuickComboBox",       "QQuickContainer",  "QQuickDial",      "QQuickGroupBox",      "QQuickIconImage",
     "QQuickImageBase",      "QQuickItemView",   "QQuickLoader",    "QQuickPage",          "QQuickPathView",
     "QQuickProgressBar",    "QQuickSlider",     "QQuickSpinBox",   "QQuickText",          "QQuickTextArea",
     "QQuickTextEdit",       "QQuickTextField",  "QQuickTextInput", "QQuickTumbler"});

bool isStateful(std::string_view type) {
    return std::ranges::find(statefulWidgets, type) != statefulWidgets.end() ||
           std::ranges::find(statefulItems, type) != statefulItems.end();
}

/// To read an alias may run the app's code.
bool isPlain(const QMetaProperty& property) {
    constexpr std::array plainTypes{QMetaType::Bool,    QMetaType::Int,  QMetaType::Double,
                                    QMetaType::QString, QMetaType::QUrl, QMetaType::QColor};
    return !property.isAlias() && std::ranges::find(plainTypes, property.typeId()) != plainTypes.end();
}

/// That of a progress bar has a virtual getter, which may be the app's; a document's may be long.
bool isLeftOut(std::string_view declaring, std::string_view property) {
    return property == "text" && (declaring == "QProgressBar" || declaring == "QQuickTextEdit");
}

void add(std::vector<StateProperty>& properties, std::string_view name, int index) {
    const auto known = std::ranges::find(properties, name, &StateProperty::name);
    if (known != properties.end()) {
        known->index = index;
    } else {
        properties.push_back({name, index});
    }
}

/// Makes the state of a superclass that of the class `type` right below it.
void addOwn(ClassState& state, const QMetaObject& type) {
    const std::string_view className = type.className();
    const bool isOfQml = isDeclared(type);
    if (!isOfQml && !isStateful(className)) {
        // To read a property of the app's own classes would run the app's code.
        return;
    }
    const int end = type.propertyCount();
    for (int index = type.propertyOffset(); index < end; ++index) {
        const QMetaProperty property = type.property(index);
        const auto name = std::ranges::find(stateNames, std::string_view(property.name()));
        if (name == stateNames.end()) {
            continue;
        }
        if (isOfQml ? isPlain(property) : !isLeftOut(className, property.name())) {
            add(state.properties, *name, index);
        }
    }
    if (className == "QQuickCanvasItem") {
        state.changeSignals.push_back(type.indexOfSignal("painted()"));
    } else if (className == "QQuickTextEdit") {
        state.changeSignals.push_back(type.indexOfSignal("textChanged()"));
    }
}

}  // namespace

ClassState classStateOf(const QMetaObject& type) {
    ClassState state = type.superClass() != nullptr ? classStateOf(*type.superClass()) : ClassState();
    addOwn(state, type);
    return state;
}

}  // namespace mireth::qt
