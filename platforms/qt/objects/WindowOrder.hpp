// Which of the app's windows stands in front of which.
#pragma once

#include <QEvent>
#include <QObject>
#include <QPointer>
#include <QWindow>
#include <cstddef>
#include <vector>

#include "platforms/qt/objects/LiveWindow.hpp"

namespace mireth::qt {

/// Qt does not tell how the desktop stacks windows. It follows from what the app and the user have done with
/// them since this object was made: a window comes to the front when it is shown, raised or focused. One
/// serves the whole application. Main thread only.
class WindowOrder final : public QObject {
  public:
    WindowOrder();

    /// Puts windows that stand above `below` back to front: dialogs in front of those that they belong to,
    /// menus and tool tips in front of all. A dialog that belongs to nobody is left out when `below` has come
    /// to the front since: nothing holds it up there.
    void sort(std::vector<LiveWindow>& windows, const QWindow* below) const;

    /// How many windows it keeps in mind: those that are there, and what has gone since one last came to the
    /// front.
    std::size_t size() const noexcept { return backToFront_.size(); }

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    struct Place;

    bool hasSunkBelow(const QWindow* below, const QWindow* window) const;
    Place placeOf(const QWindow& window, const QWindow* below) const;
    void toFront(const QWindow* window);
    /// Counted from 1; 0 for a window that was not seen coming to the front.
    std::ptrdiff_t turnOf(const QWindow& window) const;

    std::vector<QPointer<const QWindow>> backToFront_;
};

}  // namespace mireth::qt
