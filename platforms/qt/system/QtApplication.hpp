// The host application as Qt knows it: its focused window, its move to the background, its screens.
#pragma once

#include <QObject>
#include <functional>
#include <memory>
#include <variant>

#include "MirethVex/Base/PassthroughSubject.hpp"
#include "MirethVex/Platform/AppearanceDelivery.hpp"
#include "MirethVex/Platform/Application.hpp"
#include "platforms/qt/window/RecordedWindows.hpp"

namespace mireth::qt {

/// Main thread only.
class QtApplication final : public platform::Application {
  public:
    /// `appearance` is what the windows deliver their screens through.
    QtApplication(std::shared_ptr<RecordedWindows> windows,
                  std::shared_ptr<platform::AppearanceDelivery> appearance);

    /// The focused window, else the first one that is visible: the one that holds it or that it is open over,
    /// and a pop-up, a tool or a splash screen only where there is nothing else.
    std::shared_ptr<platform::Window> keyWindow() const override;
    AnyCancellable observeDidEnterBackground(std::function<void()> observer) override;
    AnyCancellable interceptViewDidAppear(platform::AppearanceInterceptor interceptor) override;
    AnyCancellable interceptViewDidDisappear(platform::AppearanceInterceptor interceptor) override;

  private:
    void stateChanged(Qt::ApplicationState state);

    const std::shared_ptr<RecordedWindows> windows_;
    const std::shared_ptr<platform::AppearanceDelivery> appearance_;
    PassthroughSubject<std::monostate> didEnterBackground_;
    bool isInBackground_ = false;
    /// Ends the connections.
    QObject context_;
};

}  // namespace mireth::qt
