// Which of the app's windows stands in front of which.
#pragma once

#include <QEvent>
#include <QObject>
#include <QWindow>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "platforms/qt/objects/LiveWindow.hpp"

namespace mireth::qt {

/// Qt does not tell how the desktop stacks windows. It follows from what the app and the user have done with
/// them since this object was made: a window comes to the front when it is shown, raised or focused. Main
/// thread only.
class WindowOrder final : public QObject {
  public:
    WindowOrder();

    /// Puts windows that stand above `below` back to front: dialogs in front of those that they belong to,
    /// menus and tool tips in front of all.
    void sort(std::vector<LiveWindow>& windows, const QWindow* below);

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    struct Place;

    Place placeOf(const QWindow& window, const QWindow* below) const;
    void toFront(const QWindow* window);
    /// 0 for a window that was not seen coming to the front.
    std::uint64_t turnOf(const QWindow& window) const;

    std::unordered_map<const QWindow*, std::uint64_t> turns_;
    std::uint64_t lastTurn_ = 0;
};

}  // namespace mireth::qt
