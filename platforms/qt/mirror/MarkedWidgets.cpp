#include "platforms/qt/mirror/MarkedWidgets.hpp"

#include <QApplication>
#include <QGraphicsProxyWidget>
#include <QGraphicsView>
#include <algorithm>

#include "platforms/qt/mirror/MarkingProperties.hpp"

namespace mireth::qt {

namespace {

/// Null for every other widget.
const QGraphicsScene* sceneShownBy(const QWidget& widget) {
    const auto* const view = qobject_cast<const QGraphicsView*>(widget.parentWidget());
    return view != nullptr && view->viewport() == &widget ? view->scene() : nullptr;
}

/// Asked of the widgets: to ask the scene for its items would run the app's code.
bool isMarkedIn(const QWidget& embedded, const QGraphicsScene& scene) {
    const auto* const proxy = embedded.graphicsProxyWidget();
    return proxy != nullptr && proxy->scene() == &scene && (showsMarked(embedded) || holdsMarked(embedded));
}

}  // namespace

bool showsMarked(const QWidget& widget) {
    if (isMarkedAsMasked(widget)) {
        return true;
    }
    const QGraphicsScene* const scene = sceneShownBy(widget);
    return scene != nullptr &&
           std::ranges::any_of(QApplication::topLevelWidgets(),
                               [scene](const QWidget* window) { return isMarkedIn(*window, *scene); });
}

bool holdsMarked(const QWidget& widget) {
    return std::ranges::any_of(widget.children(), [](const QObject* child) {
        return child->isWidgetType() && (showsMarked(static_cast<const QWidget&>(*child)) ||
                                         holdsMarked(static_cast<const QWidget&>(*child)));
    });
}

}  // namespace mireth::qt
