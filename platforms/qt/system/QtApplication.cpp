#include "platforms/qt/system/QtApplication.hpp"

#include <QGuiApplication>
#include <QWindow>
#include <algorithm>
#include <utility>
#include <vector>

#include "Base/GuardedRun.hpp"
#include "platforms/qt/objects/WindowKinds.hpp"
#include "platforms/qt/objects/WindowsBelow.hpp"
#include "platforms/qt/system/ApplicationStates.hpp"

namespace mireth::qt {

namespace {

/// The one that holds `window`, or that a dialog, a menu or the like is open over.
QWindow& mainWindowOf(QWindow& window) {
    QWindow* main = &window;
    for (QWindow* const below : windowsBelow(window)) {
        const bool isHeld = main->parent() == below;
        if (!isHeld && (!isPassing(main->type()) || !below->isVisible())) {
            break;
        }
        main = below;
    }
    return *main;
}

}  // namespace

QtApplication::QtApplication(std::shared_ptr<RecordedWindows> windows,
                             std::shared_ptr<platform::AppearanceDelivery> appearance)
    : windows_(std::move(windows)), appearance_(std::move(appearance)) {
    QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, &context_,
                     [this](Qt::ApplicationState state) { stateChanged(state); });
}

std::shared_ptr<platform::Window> QtApplication::keyWindow() const {
    std::vector<QWindow*> candidates;
    if (QWindow* const focused = QGuiApplication::focusWindow()) {
        candidates.push_back(&mainWindowOf(*focused));
    }
    for (QWindow* const window : QGuiApplication::topLevelWindows()) {
        if (window->isVisible()) {
            candidates.push_back(&mainWindowOf(*window));
        }
    }
    const auto main =
        std::ranges::find_if(candidates, [](const QWindow* window) { return canBeMain(window->type()); });
    if (main != candidates.end()) {
        return windows_->of(**main);
    }
    return candidates.empty() ? nullptr : windows_->of(*candidates.front());
}

AnyCancellable QtApplication::observeDidEnterBackground(std::function<void()> observer) {
    return didEnterBackground_.sink([observer = std::move(observer)](const std::monostate&) {
        runGuarded("an observer of the move to the background", observer);
    });
}

AnyCancellable QtApplication::interceptViewDidAppear(platform::AppearanceInterceptor interceptor) {
    return appearance_->interceptViewDidAppear(std::move(interceptor));
}

AnyCancellable QtApplication::interceptViewDidDisappear(platform::AppearanceInterceptor interceptor) {
    return appearance_->interceptViewDidDisappear(std::move(interceptor));
}

void QtApplication::stateChanged(Qt::ApplicationState state) {
    const bool wasInBackground = isInBackground_;
    isInBackground_ = isBackground(state);
    if (isInBackground_ && !wasInBackground) {
        didEnterBackground_.send({});
    }
}

}  // namespace mireth::qt
