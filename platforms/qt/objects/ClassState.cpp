#include "platforms/qt/objects/ClassState.hpp"

#include <QMetaMethod>
#include <QMetaProperty>
#include <algorithm>
#include <array>
#include <string_view>

#include "platforms/qt/objects/ClassCatalog.hpp"
#include "platforms/qt/objects/QtProperty.hpp"

namespace mireth::qt {

namespace {

constexpr std::array stateNames{"text",         "title",  "value",       "checkState",      "checked",
                                "currentIndex", "source", "windowTitle", "pixmap",          "icon",
                                "selectedDate", "font",   "keySequence", "placeholderText", "color",
                                "currentText",  "mirror"};

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
    {"QQuickAbstractButton", "QQuickCheckBox",  "QQuickCheckDelegate", "QQuickColorImage",
     "QQuickComboBox",       "QQuickContainer", "QQuickDial",          "QQuickGroupBox",
     "QQuickIconImage",      "QQuickImageBase", "QQuickItemView",      "QQuickLoader",
     "QQuickPage",           "QQuickPathView",  "QQuickProgressBar",   "QQuickSlider",
     "QQuickSpinBox",        "QQuickText",      "QQuickTextArea",      "QQuickTextEdit",
     "QQuickTextField",      "QQuickTextInput", "QQuickTumbler"});

bool isStateful(std::string_view type) {
    return std::ranges::find(statefulWidgets, type) != statefulWidgets.end() ||
           std::ranges::find(statefulItems, type) != statefulItems.end();
}

bool isPlain(const QMetaProperty& property) {
    constexpr std::array plainTypes{QMetaType::Bool,    QMetaType::Int,  QMetaType::Double,
                                    QMetaType::QString, QMetaType::QUrl, QMetaType::QColor};
    return std::ranges::find(plainTypes, property.typeId()) != plainTypes.end();
}

/// That of a progress bar has a virtual getter, which may be the app's; a document's may be long.
bool isLeftOut(std::string_view declaring, std::string_view property) {
    return property == "text" && (declaring == "QProgressBar" || declaring == "QQuickTextEdit");
}

/// To read a property of the app's own classes would run the app's code, and so does an alias for one.
bool runsNoCodeOfTheApps(const QMetaObject& declaring, const QMetaProperty& property) {
    if (isDeclared(declaring)) {
        return !property.isAlias() && isPlain(property);
    }
    const std::string_view name = declaring.className();
    return isStateful(name) && !isLeftOut(name, property.name());
}

/// That of the nearest class which may be asked; -1 when there is none.
int indexOfState(const QMetaObject& type, const char* name) {
    for (const QMetaObject* candidate = &type; candidate != nullptr; candidate = candidate->superClass()) {
        const int index = candidate->indexOfProperty(name);
        if (index < candidate->propertyOffset()) {
            continue;
        }
        if (runsNoCodeOfTheApps(*candidate, candidate->property(index))) {
            return index;
        }
    }
    return -1;
}

}  // namespace

ClassState classStateOf(const QMetaObject& type) {
    ClassState state;
    for (const char* const name : stateNames) {
        const int index = indexOfState(type, name);
        if (index >= 0) {
            state.properties.push_back(index);
        }
    }
    if (const QMetaObject* const canvas = classNamed(type, "QQuickCanvasItem")) {
        state.changeSignals.push_back(canvas->indexOfSignal("painted()"));
    }
    if (const QMetaObject* const edit = classNamed(type, "QQuickTextEdit")) {
        state.changeSignals.push_back(edit->indexOfSignal("textChanged()"));
    }
    return state;
}

}  // namespace mireth::qt
