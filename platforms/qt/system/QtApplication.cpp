#include "platforms/qt/system/QtApplication.hpp"

#include <QGuiApplication>
#include <QWindow>
#include <utility>

#include "Base/GuardedRun.hpp"

namespace mireth::qt {

QtApplication::QtApplication(std::shared_ptr<RecordedWindows> windows,
                             std::shared_ptr<platform::AppearanceDelivery> appearance)
    : windows_(std::move(windows)), appearance_(std::move(appearance)) {
    QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, &context_,
                     [this](Qt::ApplicationState state) { stateChanged(state); });
}

std::shared_ptr<platform::Window> QtApplication::keyWindow() const {
    if (auto* const focused = QGuiApplication::focusWindow()) {
        return windows_->of(*focused);
    }
    for (auto* const window : QGuiApplication::topLevelWindows()) {
        if (window->isVisible()) {
            return windows_->of(*window);
        }
    }
    return nullptr;
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
    isInBackground_ = state == Qt::ApplicationSuspended || state == Qt::ApplicationHidden;
    if (isInBackground_ && !wasInBackground) {
        didEnterBackground_.send({});
    }
}

}  // namespace mireth::qt
