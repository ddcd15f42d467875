// The application of a script: it has the key window it was given, shows screens and goes to the background
// when told.
#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <variant>

#include "MirethVex/Base/PassthroughSubject.hpp"
#include "MirethVex/Platform/AppearanceDelivery.hpp"
#include "MirethVex/Platform/Application.hpp"
#include "MirethVex/Platform/Window.hpp"

namespace mireth::headless {

/// Main thread only.
class HeadlessApplication final : public platform::Application {
  public:
    std::shared_ptr<platform::Window> keyWindow() const override { return keyWindow_; }
    AnyCancellable observeDidEnterBackground(std::function<void()> observer) override {
        return movedToBackground_.sink([observer = std::move(observer)](const auto&) { observer(); });
    }
    AnyCancellable interceptViewDidAppear(platform::AppearanceInterceptor interceptor) override {
        return appearance_.interceptViewDidAppear(std::move(interceptor));
    }
    AnyCancellable interceptViewDidDisappear(platform::AppearanceInterceptor interceptor) override {
        return appearance_.interceptViewDidDisappear(std::move(interceptor));
    }

    /// Null: no window has the keyboard.
    void setKeyWindow(std::shared_ptr<platform::Window> window) { keyWindow_ = std::move(window); }
    /// Calls the observers before it returns.
    void moveToBackground() { movedToBackground_.send({}); }
    /// How the controllers of the script's screens hear that they appeared or disappeared.
    const platform::AppearanceDelivery& appearance() const noexcept { return appearance_; }

  private:
    std::shared_ptr<platform::Window> keyWindow_;
    PassthroughSubject<std::monostate> movedToBackground_;
    platform::AppearanceDelivery appearance_;
};

}  // namespace mireth::headless
