// Watches the touches and mouse presses of a window and tells the library of them.
#pragma once

#include <QEvent>
#include <QObject>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "MirethVex/Platform/Clock.hpp"
#include "MirethVex/Platform/TapCounter.hpp"
#include "MirethVex/Platform/Window.hpp"
#include "platforms/qt/objects/LiveWindow.hpp"

class QMouseEvent;
class QPointF;
class QPointingDevice;
class QTouchEvent;

namespace mireth::qt {

/// Filters the application's events before its windows see them; takes and changes none. Touches of the
/// windows that stand above the recorded one count at their place in it. A finger that stays within the
/// platform's drag distance of where it began has not moved, as for Qt's own buttons. What is touched on an
/// on-screen keyboard is not told. Main thread only.
class TouchSource final : public QObject {
  public:
    using Views = std::vector<std::shared_ptr<platform::View>>;

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
    struct Finger {
        /// Only to be compared: it may be gone.
        const QPointingDevice* device = nullptr;
        platform::Touch touch;
        bool hasMoved = false;
        std::shared_ptr<const Views> shownAtPress;
    };

    void handle(const QWindow& window, const QEvent& event);
    void handleMouse(const QWindow& window, const QMouseEvent& event);
    void handleTouch(const QWindow& window, const QTouchEvent& event);

    platform::TouchEvent makeEvent() const;
    void begin(platform::TouchEvent& event, std::uint64_t key, const QPointingDevice* device, Point location);
    void move(platform::TouchEvent& event, std::uint64_t key, Point location);
    void end(platform::TouchEvent& event, std::uint64_t key, std::optional<Point> location);
    /// Of a finger whose end was never heard of, for one.
    void cancel(platform::TouchEvent& event, std::uint64_t key);
    void cancelAllOf(const QPointingDevice* device);
    void send(const platform::TouchEvent& event);

    /// Where a point of one of the windows, or of a window in one of them, lies in the recorded one; nothing
    /// for a window that is not shown with it.
    std::optional<Point> locationOf(const QWindow& window, const QPointF& position) const;
    platform::TapCounter& counter();

    platform::Window& window_;
    const LiveWindow live_;
    const std::shared_ptr<platform::Clock> clock_;
    const std::function<Views()> look_;
    std::optional<platform::TapCounter> counter_;
    std::map<std::uint64_t, Finger> fingers_;
    std::uint64_t lastIdentity_ = 0;
    /// Of the touch that ends, until that has been told.
    std::shared_ptr<const Views> shownAtPress_;
};

}  // namespace mireth::qt
