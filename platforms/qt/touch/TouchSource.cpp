#include "platforms/qt/touch/TouchSource.hpp"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPointer>
#include <QPointingDevice>
#include <QThread>
#include <QTouchEvent>
#include <algorithm>
#include <utility>

#include "Base/GuardedRun.hpp"
#include "platforms/qt/objects/ScreenKeyboard.hpp"

namespace mireth::qt {

using platform::TouchEvent;

namespace {

/// No touch point has it: their identifiers are ints, one device's range beside the other's.
constexpr Fingers::Key mouseKey = ~Fingers::Key{0};

bool isFrom(QInputDevice::DeviceType type, const QPointerEvent& event) {
    const auto* const device = event.pointingDevice();
    return device != nullptr && device->type() == type;
}

/// A touch pad moves the mouse; where on the pad its fingers lie says nothing of the window.
bool isFromTouchScreen(const QPointerEvent& event) {
    return isFrom(QInputDevice::DeviceType::TouchScreen, event);
}

/// What Qt makes of a touch that nobody took.
bool isMadeOfTouch(const QMouseEvent& event) {
    return isFromTouchScreen(event) || (isFrom(QInputDevice::DeviceType::TouchPad, event) &&
                                        event.source() == Qt::MouseEventSynthesizedByQt);
}

bool isMouse(QEvent::Type type) {
    return type == QEvent::MouseButtonPress || type == QEvent::MouseMove ||
           type == QEvent::MouseButtonRelease;
}

bool isTouch(QEvent::Type type) {
    return type == QEvent::TouchBegin || type == QEvent::TouchUpdate || type == QEvent::TouchEnd ||
           type == QEvent::TouchCancel;
}

Fingers::Key keyOf(const QEventPoint& point) {
    return static_cast<std::uint32_t>(point.id());
}

}  // namespace

TouchSource::TouchSource(platform::Window& window, const LiveWindow& live,
                         std::shared_ptr<platform::Clock> clock, std::function<Views()> look)
    : window_(window), live_(live), clock_(std::move(clock)), look_(std::move(look)) {
    QCoreApplication::instance()->installEventFilter(this);
}

void TouchSource::comeFirst() {
    // In a loop that one of the app's filters has opened, it would be asked twice.
    if (QThread::currentThread()->loopLevel() <= 1) {
        QCoreApplication::instance()->installEventFilter(this);
    }
}

bool TouchSource::eventFilter(QObject* watched, QEvent* event) {
    const bool isOurs = isMouse(event->type()) || isTouch(event->type());
    if (!isOurs || !watched->isWindowType() || window_.gestureRecognizers().empty()) {
        return false;
    }
    // Who hears of a touch may let go of the recorded window, and of this object with it.
    const auto recorded = window_.weak_from_this().lock();
    const QPointer<QObject> alive(watched);
    runGuarded("the watching of touches", [&] { handle(static_cast<const QWindow&>(*watched), *event); });
    // Or take the app's window away, which nobody else may be asked about then.
    return alive == nullptr;
}

void TouchSource::handle(const QWindow& window, const QEvent& event) {
    if (isMouse(event.type())) {
        handleMouse(window, static_cast<const QMouseEvent&>(event));
    } else if (isFromTouchScreen(static_cast<const QTouchEvent&>(event))) {
        handleTouch(window, static_cast<const QTouchEvent&>(event));
    }
}

void TouchSource::handleMouse(const QWindow& window, const QMouseEvent& event) {
    const bool isPress = event.type() == QEvent::MouseButtonPress;
    if (isMadeOfTouch(event) || (!isPress && !fingers_.contains(mouseKey))) {
        return;
    }
    const auto location = locationOf(window, event.position());
    TouchEvent touches = makeEvent();
    if (isPress) {
        if (event.button() == Qt::LeftButton && location && !isOnKeyboard(window, event.position())) {
            begin(touches, mouseKey, event.pointingDevice(), *location);
        }
    } else if (event.type() == QEvent::MouseMove) {
        if (!event.buttons().testFlag(Qt::LeftButton)) {
            // The release was lost, as when a menu is closed by a press outside of it.
            end(touches, mouseKey, std::nullopt);
        } else if (location) {
            fingers_.move(touches, mouseKey, *location);
        }
    } else if (event.button() == Qt::LeftButton) {
        end(touches, mouseKey, location);
    }
    send(touches);
}

void TouchSource::handleTouch(const QWindow& window, const QTouchEvent& event) {
    const QPointingDevice* const device = event.pointingDevice();
    TouchEvent touches = makeEvent();
    if (event.type() == QEvent::TouchCancel) {
        if (locationOf(window, QPointF())) {
            fingers_.cancelAllOf(touches, device);
            send(touches);
        }
        return;
    }
    for (const QEventPoint& point : event.points()) {
        const auto location = locationOf(window, point.position());
        if (point.state() == QEventPoint::Released) {
            end(touches, keyOf(point), location);
        } else if (location && point.state() == QEventPoint::Pressed &&
                   !isOnKeyboard(window, point.position())) {
            begin(touches, keyOf(point), device, *location);
        } else if (location && point.state() == QEventPoint::Updated) {
            fingers_.move(touches, keyOf(point), *location);
        }
    }
    send(touches);
}

TouchEvent TouchSource::makeEvent() const {
    TouchEvent event;
    event.timestamp = clock_->uptimeSeconds();
    return event;
}

void TouchSource::begin(TouchEvent& event, Fingers::Key key, const QPointingDevice* device, Point location) {
    // By itself: within one event a begin would be heard of first.
    TouchEvent lost = makeEvent();
    fingers_.cancel(lost, key);
    send(lost);
    const auto recorded = std::static_pointer_cast<platform::Window>(window_.weak_from_this().lock());
    fingers_.begin(event, key, {device, location, recorded, std::make_shared<const Views>(look_())});
}

void TouchSource::end(TouchEvent& event, Fingers::Key key, std::optional<Point> location) {
    if (auto shown = fingers_.end(event, key, location)) {
        shownAtPress_ = std::move(shown);
    }
}

void TouchSource::send(const TouchEvent& event) {
    if (event.touches.empty()) {
        return;
    }
    window_.sendEvent(event);
    shownAtPress_ = nullptr;
}

std::optional<Point> TouchSource::locationOf(const QWindow& window, const QPointF& position) const {
    const QWindow* const recorded = live_.window();
    // Native widgets and the windows that widgets contain are windows in windows.
    const QWindow* outer = &window;
    QPointF place = position;
    while (outer != recorded && outer->parent() != nullptr) {
        place += outer->position();
        outer = outer->parent();
    }
    if (outer == recorded) {
        return Point{place.x(), place.y()};
    }
    const auto above = live_.windowsAbove();
    if (std::ranges::none_of(above, [outer](const LiveWindow& live) { return live.window() == outer; })) {
        return std::nullopt;
    }
    const QPointF global = outer->mapToGlobal(place);
    const QPointF own = recorded->mapFromGlobal(global);
    return Point{own.x(), own.y()};
}

}  // namespace mireth::qt
