#include "platforms/qt/objects/MarkedWidgets.hpp"

#include <QApplication>
#include <QGraphicsProxyWidget>
#include <QGraphicsView>
#include <algorithm>
#include <vector>

#include "platforms/qt/objects/MarkingProperties.hpp"

namespace mireth::qt {

namespace {

/// Null for every other widget.
const QGraphicsScene* sceneShownBy(const QWidget& widget) {
    const auto* const view = qobject_cast<const QGraphicsView*>(widget.parentWidget());
    return view != nullptr && view->viewport() == &widget ? view->scene() : nullptr;
}

/// One look at widgets, and at those in the scenes that they show. A scene may hold a view of itself.
class Look {
  public:
    bool findsShownBy(const QWidget& widget) {
        if (isMarkedAsMasked(widget)) {
            return true;
        }
        const QGraphicsScene* const scene = sceneShownBy(widget);
        if (scene == nullptr || std::ranges::find(scenes_, scene) != scenes_.end()) {
            return false;
        }
        scenes_.push_back(scene);
        return std::ranges::any_of(QApplication::topLevelWidgets(), [&](const QWidget* window) {
            return isEmbeddedIn(*window, *scene) && (findsShownBy(*window) || findsIn(*window));
        });
    }

    bool findsIn(const QWidget& widget) {
        return std::ranges::any_of(widget.children(), [this](const QObject* child) {
            return child->isWidgetType() && (findsShownBy(static_cast<const QWidget&>(*child)) ||
                                             findsIn(static_cast<const QWidget&>(*child)));
        });
    }

  private:
    /// Asked of the widgets: to ask the scene for its items would run the app's code.
    static bool isEmbeddedIn(const QWidget& widget, const QGraphicsScene& scene) {
        const auto* const proxy = widget.graphicsProxyWidget();
        return proxy != nullptr && proxy->scene() == &scene;
    }

    std::vector<const QGraphicsScene*> scenes_;
};

}  // namespace

bool showsMarked(const QWidget& widget) {
    return Look().findsShownBy(widget);
}

bool holdsMarked(const QWidget& widget) {
    return Look().findsIn(widget);
}

}  // namespace mireth::qt
