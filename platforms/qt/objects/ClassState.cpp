#include "platforms/qt/objects/ClassState.hpp"

#include <QMetaMethod>
#include <QMetaProperty>
#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

#include "platforms/qt/objects/ClassCatalog.hpp"

namespace mireth::qt {

namespace {

constexpr std::array stateNames{"text",         "title",  "value",       "checkState", "checked",
                                "currentIndex", "source", "windowTitle", "pixmap",     "icon",
                                "selectedDate", "font",   "keySequence"};

/// The classes of Qt's that declare them. Their getters run nothing of the app's.
constexpr std::array<std::string_view, 38> statefulClasses{
    "QAbstractButton",      "QAbstractSlider", "QAbstractSpinBox",    "QCalendarWidget", "QComboBox",
    "QDateTimeEdit",        "QDockWidget",     "QDoubleSpinBox",      "QGroupBox",       "QKeySequenceEdit",
    "QLCDNumber",           "QLabel",          "QLineEdit",           "QMdiSubWindow",   "QMenu",
    "QProgressBar",         "QSpinBox",        "QStackedWidget",      "QTabBar",         "QTabWidget",
    "QQuickAbstractButton", "QQuickCheckBox",  "QQuickCheckDelegate", "QQuickComboBox",  "QQuickContainer",
    "QQuickDial",           "QQuickGroupBox",  "QQuickImageBase",     "QQuickItemView",  "QQuickPage",
    "QQuickPathView",       "QQuickLoader",    "QQuickProgressBar",   "QQuickSlider",    "QQuickSpinBox",
    "QQuickText",           "QQuickTextInput", "QQuickTumbler"};

bool isPlain(const QMetaProperty& property) {
    constexpr std::array plainTypes{QMetaType::Bool, QMetaType::Int, QMetaType::Double, QMetaType::QString,
                                    QMetaType::QUrl};
    return std::ranges::find(plainTypes, property.typeId()) != plainTypes.end();
}

/// The getter is virtual, and may be the app's.
bool isVirtual(std::string_view declaring, std::string_view property) {
    return declaring == "QProgressBar" && property == "text";
}

/// To read a property of the app's own classes would run the app's code, and so does an alias for one.
bool runsNoCodeOfTheApps(const QMetaObject& declaring, const QMetaProperty& property) {
    if (isDeclared(declaring)) {
        return !property.isAlias() && isPlain(property);
    }
    const std::string_view name = declaring.className();
    return std::ranges::find(statefulClasses, name) != statefulClasses.end() &&
           !isVirtual(name, property.name());
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

const QMetaObject* classNamed(const QMetaObject& type, const char* name) {
    const QMetaObject* candidate = &type;
    while (candidate != nullptr && std::strcmp(candidate->className(), name) != 0) {
        candidate = candidate->superClass();
    }
    return candidate;
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
    state.isTextEditOfItems = classNamed(type, "QQuickTextEdit") != nullptr;
    return state;
}

}  // namespace mireth::qt
