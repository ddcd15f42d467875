#include "platforms/qt/mirror/StateText.hpp"

#include <QAbstractItemView>
#include <QAbstractScrollArea>
#include <QMetaProperty>
#include <QPlainTextEdit>
#include <QQuickItem>
#include <QQuickTextDocument>
#include <QScrollBar>
#include <QTextDocument>
#include <QTextEdit>
#include <QVariant>
#include <array>
#include <string>

#include "MirethVex/Platform/TextViews.hpp"
#include "platforms/qt/mirror/ClassCatalog.hpp"
#include "platforms/qt/mirror/LayerValues.hpp"

namespace mireth::qt {

namespace {

constexpr std::array stateProperties{"text",         "title",       "value",  "checkState", "checked",
                                     "currentIndex", "currentText", "source", "windowTitle"};

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

void append(std::string& state, const std::string& part) {
    state.append(part).append("\n");
}

void appendScrolling(std::string& state, const QObject& object) {
    const auto* area = qobject_cast<const QAbstractScrollArea*>(&object);
    if (area == nullptr) {
        return;
    }
    append(state, std::to_string(area->horizontalScrollBar()->value()));
    append(state, std::to_string(area->verticalScrollBar()->value()));
    if (const auto* list = qobject_cast<const QAbstractItemView*>(&object)) {
        append(state, std::to_string(list->currentIndex().row()));
        append(state, std::to_string(list->currentIndex().column()));
    }
}

std::string stateOf(const QObject& object) {
    std::string state;
    if (const auto* document = documentOf(object)) {
        append(state, std::to_string(document->revision()));
    } else {
        for (const char* const name : stateProperties) {
            const int index = object.metaObject()->indexOfProperty(name);
            if (index >= 0 && isOfQt(object.metaObject()->property(index))) {
                append(state, textOf(object.metaObject()->property(index).read(&object).toString()));
            }
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

void describeState(const QObject& object, platform::View& view) {
    if (auto* const label = dynamic_cast<platform::Label*>(&view)) {
        label->content.text = stateOf(object);
    } else if (auto* const input = dynamic_cast<platform::TextInputView*>(&view)) {
        input->content.text = stateOf(object);
        input->isFirstResponder = hasFocus(object);
    }
}

}  // namespace mireth::qt
