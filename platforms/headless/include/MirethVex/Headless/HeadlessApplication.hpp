// The application of a script: it has the key window it was given, and goes to the background when told.
#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <variant>

#include "MirethVex/Base/PassthroughSubject.hpp"
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

    /// Null: no window has the keyboard.
    void setKeyWindow(std::shared_ptr<platform::Window> window) { keyWindow_ = std::move(window); }
    /// Calls the observers before it returns.
    void moveToBackground() { movedToBackground_.send({}); }

  private:
    std::shared_ptr<platform::Window> keyWindow_;
    PassthroughSubject<std::monostate> movedToBackground_;
};

}  // namespace mireth::headless
