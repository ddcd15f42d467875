// Watches the touches and mouse presses of a window and tells the library of them.
#pragma once

#include <QEvent>
#include <QObject>
#include <functional>
#include <memory>
#include <optional>

#include "MirethVex/Platform/Clock.hpp"
#include "MirethVex/Platform/Window.hpp"
#include "platforms/qt/objects/LiveWindow.hpp"
#include "platforms/qt/touch/Fingers.hpp"

class QMouseEvent;
class QPointF;
class QPointingDevice;
class QTouchEvent;

namespace mireth::qt {

/// Filters the application's events before its windows see them; takes and changes none. Touches of the
/// windows that stand above the recorded one count at their place in it. What is touched on an on-screen
/// keyboard is not told. Main thread only.
class TouchSource final : public QObject {
  public:
    using Views = Fingers::Views;

    /// `window` outlives this object; events arrive only while it is owned by a shared_ptr. `look` gives what
    /// the window shows now.
    TouchSource(platform::Window& window, const LiveWindow& live, std::shared_ptr<platform::Clock> clock,
                std::function<Views()> look);

    /// While the end of a touch is being told: what the window showed before the app heard of its beginning.
    /// Else null. Much in Qt reacts to the press already: what a tap has led to is the difference to this.
    std::shared_ptr<const Views> shownAtPress() const { return shownAtPress_; }

    /// Before the filters that the app has installed since.
    void comeFirst();

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void handle(const QWindow& window, const QEvent& event);
    void handleMouse(const QWindow& window, const QMouseEvent& event);
    void handleTouch(const QWindow& window, const QTouchEvent& event);

    platform::TouchEvent makeEvent() const;
    void begin(platform::TouchEvent& event, Fingers::Key key, const QPointingDevice* device, Point location);
    void end(platform::TouchEvent& event, Fingers::Key key, std::optional<Point> location);
    void send(const platform::TouchEvent& event);

    /// Where a point of one of the windows, or of a window in one of them, lies in the recorded one; nothing
    /// for a window that is not shown with it.
    std::optional<Point> locationOf(const QWindow& window, const QPointF& position) const;

    platform::Window& window_;
    const LiveWindow live_;
    const std::shared_ptr<platform::Clock> clock_;
    const std::function<Views()> look_;
    Fingers fingers_;
    /// Of the touch that ends, until that has been told.
    std::shared_ptr<const Views> shownAtPress_;
};

}  // namespace mireth::qt
