#include "platforms/qt/objects/WindowOrder.hpp"

#include <QCoreApplication>
#include <QWidget>
#include <algorithm>
#include <compare>

#include "platforms/qt/objects/WindowKinds.hpp"
#include "platforms/qt/objects/WindowsBelow.hpp"

namespace mireth::qt {

namespace {

int storeyOf(const QWindow& window) {
    if (window.type() == Qt::Popup || window.type() == Qt::ToolTip) {
        return 2;
    }
    return window.flags().testFlag(Qt::WindowStaysOnTopHint) ? 1 : 0;
}

}  // namespace

struct WindowOrder::Place {
    int storey = 0;
    /// The latest of the window's own turn and those of the windows that it belongs to, which it comes with.
    std::ptrdiff_t turn = 0;
    int depth = 0;
    std::ptrdiff_t ownTurn = 0;

    auto operator<=>(const Place&) const = default;
};

WindowOrder::WindowOrder() {
    QCoreApplication::instance()->installEventFilter(this);
}

void WindowOrder::sort(std::vector<LiveWindow>& windows, const QWindow* below) const {
    std::erase_if(windows, [&](const LiveWindow& live) { return hasSunkBelow(below, live.window()); });
    std::ranges::stable_sort(windows, {}, [this, below](const LiveWindow& live) {
        const QWindow* const window = live.window();
        return window != nullptr ? placeOf(*window, below) : Place();
    });
}

bool WindowOrder::eventFilter(QObject* watched, QEvent* event) {
    const bool isShownOrFocused = event->type() == QEvent::Show || event->type() == QEvent::FocusIn;
    if (isShownOrFocused && watched->isWindowType()) {
        toFront(static_cast<const QWindow*>(watched));
    } else if (event->type() == QEvent::ZOrderChange && watched->isWidgetType()) {
        toFront(static_cast<const QWidget*>(watched)->windowHandle());
    }
    return false;
}

bool WindowOrder::hasSunkBelow(const QWindow* below, const QWindow* window) const {
    return below != nullptr && window != nullptr && isDialog(window->type()) && !window->isModal() &&
           window->transientParent() == nullptr && storeyOf(*window) == 0 && turnOf(*window) < turnOf(*below);
}

WindowOrder::Place WindowOrder::placeOf(const QWindow& window, const QWindow* below) const {
    Place place;
    place.storey = storeyOf(window);
    place.ownTurn = turnOf(window);
    place.turn = place.ownTurn;
    for (const QWindow* const owner : windowsBelow(window)) {
        if (owner == below) {
            break;
        }
        place.turn = std::max(place.turn, turnOf(*owner));
        ++place.depth;
    }
    return place;
}

void WindowOrder::toFront(const QWindow* window) {
    if (window != nullptr && window->isTopLevel()) {
        std::erase_if(backToFront_,
                      [window](const auto& known) { return known == nullptr || known == window; });
        backToFront_.emplace_back(window);
    }
}

std::ptrdiff_t WindowOrder::turnOf(const QWindow& window) const {
    const auto known = std::ranges::find_if(backToFront_, [&](const auto& each) { return each == &window; });
    return known != backToFront_.end() ? known - backToFront_.begin() + 1 : 0;
}

}  // namespace mireth::qt
