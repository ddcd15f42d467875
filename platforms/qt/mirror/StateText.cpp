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
#include <array>
#include <cstddef>
#include <string>

#include "MirethVex/Platform/TextViews.hpp"
#include "platforms/qt/mirror/ClassCatalog.hpp"

namespace mireth::qt {

namespace {

constexpr std::array stateNames{"text",    "title",        "value",  "checkState",
                                "checked", "currentIndex", "source", "windowTitle"};

/// A long document is told by its revision: copying its text twice a second would cost too much.
const QTextDocument* documentOf(const QObject& object) {
    if (const auto* edit = qobject_cast<const QTextEdit*>(&object)) {
        return edit->document();
    }
    if (const auto* edit = qobject_cast<const QPlainTextEdit*>(&object)) {
        return edit->document();
    }
    if (object.inherits("QQuickTextEdit")) {
        const auto* document = object.property("textDocument").value<QQuickTextDocument*>();
        return document != nullptr ? document->textDocument() : nullptr;
    }
    return nullptr;
}

/// To read a property of the app's own classes would run the app's code.
bool isOfQt(const QMetaProperty& property) {
    const QMetaObject* type = property.enclosingMetaObject();
    return type != nullptr && (isDeclared(*type) || type->className()[0] == 'Q');
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
        const int index = type.indexOfProperty(name);
        if (index >= 0 && isOfQt(type.property(index))) {
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
