#include "platforms/qt/mirror/StateText.hpp"

#include <QAbstractItemView>
#include <QAbstractScrollArea>
#include <QHashFunctions>
#include <QMetaProperty>
#include <QPlainTextEdit>
#include <QQuickItem>
#include <QQuickTextDocument>
#include <QScrollBar>
#include <QTextDocument>
#include <QTextEdit>
#include <QVariant>
#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "MirethVex/Platform/TextViews.hpp"
#include "platforms/qt/mirror/ClassCatalog.hpp"
#include "platforms/qt/mirror/QtProperty.hpp"

namespace mireth::qt {

namespace {

constexpr std::array stateNames{"text",    "title",        "value",  "checkState",
                                "checked", "currentIndex", "source", "windowTitle"};

/// The classes of Qt's that declare them. Their getters run nothing of the app's.
constexpr std::array<std::string_view, 37> statefulClasses{"QAbstractButton",
                                                           "QAbstractSlider",
                                                           "QAbstractSpinBox",
                                                           "QComboBox",
                                                           "QDateTimeEdit",
                                                           "QDockWidget",
                                                           "QDoubleSpinBox",
                                                           "QGroupBox",
                                                           "QLCDNumber",
                                                           "QLabel",
                                                           "QLineEdit",
                                                           "QMdiSubWindow",
                                                           "QMenu",
                                                           "QProgressBar",
                                                           "QSpinBox",
                                                           "QStackedWidget",
                                                           "QTabBar",
                                                           "QTabWidget",
                                                           "QWidget",
                                                           "QQuickAbstractButton",
                                                           "QQuickCheckBox",
                                                           "QQuickCheckDelegate",
                                                           "QQuickComboBox",
                                                           "QQuickContainer",
                                                           "QQuickDial",
                                                           "QQuickGroupBox",
                                                           "QQuickImageBase",
                                                           "QQuickItemView",
                                                           "QQuickPage",
                                                           "QQuickPathView",
                                                           "QQuickLoader",
                                                           "QQuickProgressBar",
                                                           "QQuickSlider",
                                                           "QQuickSpinBox",
                                                           "QQuickText",
                                                           "QQuickTextInput",
                                                           "QQuickTumbler"};

/// A long document is told by its revision: copying its text twice a second would cost too much.
const QTextDocument* documentOf(const QObject& object) {
    if (const auto* edit = qobject_cast<const QTextEdit*>(&object)) {
        return edit->document();
    }
    if (const auto* edit = qobject_cast<const QPlainTextEdit*>(&object)) {
        return edit->document();
    }
    if (object.inherits("QQuickTextEdit")) {
        const auto* document =
            qtProperty(object, "QQuickTextEdit", "textDocument").value<QQuickTextDocument*>();
        return document != nullptr ? document->textDocument() : nullptr;
    }
    return nullptr;
}

bool isPlain(const QMetaProperty& property) {
    constexpr std::array plainTypes{QMetaType::Bool, QMetaType::Int, QMetaType::Double, QMetaType::QString,
                                    QMetaType::QUrl};
    return std::ranges::find(plainTypes, property.typeId()) != plainTypes.end();
}

/// Its getter is virtual: a class of the app's may have one of its own.
bool hasVirtualGetter(const QMetaObject& declaring, const char* property) {
    return std::string_view(declaring.className()) == "QProgressBar" && std::string_view(property) == "text";
}

/// To read a property of the app's own classes would run the app's code, and so does an alias for one.
bool runsNoCodeOfTheApps(const QMetaObject& declaring, const QMetaProperty& property) {
    if (isDeclared(declaring)) {
        return !property.isAlias() && isPlain(property);
    }
    return !hasVirtualGetter(declaring, property.name()) &&
           std::ranges::find(statefulClasses, std::string_view(declaring.className())) !=
               statefulClasses.end();
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

void append(std::string& state, std::size_t part) {
    state.append(std::to_string(part)).append("\n");
}

/// Texts, passwords among them, are not copied: it is enough to know whether they are still the same.
void appendValue(std::string& state, const QVariant& value) {
    append(state, qHash(value.toString()));
}

void appendScrolling(std::string& state, const QObject& object) {
    const auto* area = qobject_cast<const QAbstractScrollArea*>(&object);
    if (area == nullptr) {
        return;
    }
    appendValue(state, area->horizontalScrollBar()->value());
    appendValue(state, area->verticalScrollBar()->value());
    if (const auto* list = qobject_cast<const QAbstractItemView*>(&object)) {
        appendValue(state, list->currentIndex().row());
        appendValue(state, list->currentIndex().column());
    }
}

std::string stateOf(const QObject& object, const std::vector<int>& properties) {
    std::string state;
    if (const auto* document = documentOf(object)) {
        appendValue(state, document->revision());
    } else {
        for (const int index : properties) {
            appendValue(state, object.metaObject()->property(index).read(&object));
        }
    }
    appendScrolling(state, object);
    return state;
}

bool hasFocus(const QObject& object) {
    if (const auto* widget = qobject_cast<const QWidget*>(&object)) {
        return widget->hasFocus();
    }
    const auto* item = qobject_cast<const QQuickItem*>(&object);
    return item != nullptr && item->hasActiveFocus();
}

}  // namespace

std::vector<int> statePropertiesOf(const QMetaObject& type) {
    std::vector<int> properties;
    for (const char* const name : stateNames) {
        const int index = indexOfState(type, name);
        if (index >= 0) {
            properties.push_back(index);
        }
    }
    return properties;
}

void describeState(const QObject& object, const std::vector<int>& properties, platform::View& view) {
    if (auto* const label = dynamic_cast<platform::Label*>(&view)) {
        label->content.text = stateOf(object, properties);
    } else if (auto* const input = dynamic_cast<platform::TextInputView*>(&view)) {
        input->content.text = stateOf(object, properties);
        input->isFirstResponder = hasFocus(object);
    }
}

}  // namespace mireth::qt
