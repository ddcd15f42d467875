// The host application, as its toolkit knows it.
#pragma once

#include <functional>
#include <memory>

#include "MirethVex/Base/AnyCancellable.hpp"

namespace mireth::platform {

class Window;

/// Main thread only.
class Application {
  public:
    virtual ~Application() = default;
    /// The window that receives keyboard input; null when there is none.
    virtual std::shared_ptr<Window> keyWindow() const = 0;
    /// Calls `observer` on the main thread each time the application has moved to the background, until the
    /// token is dropped.
    virtual AnyCancellable observeDidEnterBackground(std::function<void()> observer) = 0;
};

}  // namespace mireth::platform
