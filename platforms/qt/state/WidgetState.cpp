#include "platforms/qt/state/WidgetState.hpp"

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QAbstractScrollArea>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMetaMethod>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QStatusBar>
#include <QTabBar>
#include <QTextDocument>
#include <QTextEdit>
#include <QTreeView>
#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include "platforms/qt/objects/ClassState.hpp"

namespace mireth::qt {

namespace {

using Indexes = std::span<const int>;

/// Of a signal among the methods of its class.
template <class Signal>
int indexOf(Signal signal) {
    return QMetaMethod::fromSignal(signal).methodIndex();
}

Indexes signalsOfModels() {
    using Model = QAbstractItemModel;
    static const std::array indexes{indexOf(&Model::dataChanged),    indexOf(&Model::headerDataChanged),
                                    indexOf(&Model::layoutChanged),  indexOf(&Model::modelReset),
                                    indexOf(&Model::rowsInserted),   indexOf(&Model::rowsRemoved),
                                    indexOf(&Model::rowsMoved),      indexOf(&Model::columnsInserted),
                                    indexOf(&Model::columnsRemoved), indexOf(&Model::columnsMoved)};
    return indexes;
}

Indexes signalsOfSelections() {
    using Selection = QItemSelectionModel;
    static const std::array indexes{indexOf(&Selection::selectionChanged),
                                    indexOf(&Selection::currentChanged)};
    return indexes;
}

Indexes signalsOf(const QAbstractItemView& view) {
    static const std::array ofTrees{indexOf(&QTreeView::expanded), indexOf(&QTreeView::collapsed)};
    static const std::array ofHeaders{indexOf(&QHeaderView::sectionResized),
                                      indexOf(&QHeaderView::sectionMoved),
                                      indexOf(&QHeaderView::sortIndicatorChanged)};
    if (qobject_cast<const QTreeView*>(&view) != nullptr) {
        return ofTrees;
    }
    return qobject_cast<const QHeaderView*>(&view) != nullptr ? Indexes(ofHeaders) : Indexes();
}

/// By Qt's own way of naming: of the other classes nobody knows what they do when somebody begins to listen.
bool isOfQts(const QObject* object) {
    const std::string_view name = object != nullptr ? object->metaObject()->className() : "QObject";
    return name.size() > 1 && name[0] == 'Q' && name[1] >= 'A' && name[1] <= 'Z';
}

/// Null for any other widget.
const QTextDocument* documentOf(const QWidget& widget) {
    if (const auto* edit = qobject_cast<const QTextEdit*>(&widget)) {
        return edit->document();
    }
    const auto* const edit = qobject_cast<const QPlainTextEdit*>(&widget);
    return edit != nullptr ? edit->document() : nullptr;
}

void addScrolling(StateDigest& digest, const QAbstractScrollArea& area) {
    for (const QScrollBar* const bar : {area.horizontalScrollBar(), area.verticalScrollBar()}) {
        digest.addNumber(bar->value());
        digest.addNumber(bar->maximum());
    }
}

void addTabs(StateDigest& digest, const QTabBar& bar) {
    for (int tab = 0; tab < bar.count(); ++tab) {
        digest.addText(bar.tabText(tab));
        digest.addNumber(bar.tabIcon(tab).cacheKey());
    }
}

bool hasWidgetsInIt(const QWidget& widget) {
    return std::ranges::any_of(widget.children(), [](const QObject* child) { return child->isWidgetType(); });
}

/// The widget that paints what nothing but its painting tells of; null for most.
const QWidget* paintedOnly(const QWidget& widget, const MirroredClass& rule) {
    if (const auto* const area = qobject_cast<const QAbstractScrollArea*>(&widget)) {
        const bool isKnown = qobject_cast<const QAbstractItemView*>(area) != nullptr ||
                             qobject_cast<const QScrollArea*>(area) != nullptr ||
                             qobject_cast<const QMdiArea*>(area) != nullptr ||
                             qobject_cast<const QTextEdit*>(area) != nullptr ||
                             qobject_cast<const QPlainTextEdit*>(area) != nullptr;
        return isKnown ? nullptr : area->viewport();
    }
    // With others in it, it is painted whenever one of them is.
    const bool isUnknown = rule.shown == Shown::container && !rule.emptyIsHarmless;
    return isUnknown && !hasWidgetsInIt(widget) ? &widget : nullptr;
}

}  // namespace

void WidgetState::addTo(StateDigest& digest, const QWidget& widget, const MirroredClass& rule) {
    digest.addProperties(widget, rule.state->properties);
    if (const QTextDocument* const document = documentOf(widget)) {
        digest.addNumber(document->revision());
    }
    digest.addNumber(widget.isEnabled() ? 1 : 0);
    digest.addNumber(widget.palette().cacheKey());
    digest.addFont(widget.font());
    if (const auto* const area = qobject_cast<const QAbstractScrollArea*>(&widget)) {
        addScrolling(digest, *area);
    }
    if (const auto* const view = qobject_cast<const QAbstractItemView*>(&widget)) {
        addItemView(digest, *view);
    } else if (const auto* const tabs = qobject_cast<const QTabBar*>(&widget)) {
        addTabs(digest, *tabs);
    } else if (const auto* const bar = qobject_cast<const QStatusBar*>(&widget)) {
        digest.addText(bar->currentMessage());
    } else if (qobject_cast<const QMdiSubWindow*>(&widget) != nullptr) {
        digest.addText(widget.windowTitle());
    }
    if (const QWidget* const painted = paintedOnly(widget, rule)) {
        digest.add(paints_.of(*painted));
    }
}

void WidgetState::addItemView(StateDigest& digest, const QAbstractItemView& view) {
    digest.add(reinterpret_cast<std::uintptr_t>(view.model()));
    if (!isOfQts(&view) || !isOfQts(view.model()) || !isOfQts(view.selectionModel())) {
        digest.add(paints_.of(*view.viewport()));
        return;
    }
    addCount(digest, &view, signalsOf(view));
    addCount(digest, view.model(), signalsOfModels());
    addCount(digest, view.selectionModel(), signalsOfSelections());
}

void WidgetState::addCount(StateDigest& digest, const QObject* sender, std::span<const int> signalIndexes) {
    if (sender != nullptr && !signalIndexes.empty()) {
        digest.add(signals_.of(*sender, signalIndexes));
    }
}

void WidgetState::endPass() {
    signals_.endPass();
    paints_.endPass();
}

}  // namespace mireth::qt
