// The host application, as its toolkit knows it.
#pragma once

#include <functional>
#include <memory>

#include "MirethVex/Base/AnyCancellable.hpp"

namespace mireth::platform {

class ViewController;
class Window;

/// Told of a controller whose screen has appeared or disappeared, before the controller's own handler runs.
using AppearanceInterceptor = std::function<void(const ViewController&)>;

/// Main thread only. The library keeps it for the rest of the process: see PlatformServices.
class Application {
  public:
    virtual ~Application() = default;
    /// The window that receives keyboard input; null when there is none. Asked by an `initializeProject` that
    /// was given no window, and not again.
    virtual std::shared_ptr<Window> keyWindow() const = 0;
    /// Calls `observer` on the main thread each time the application has moved to the background, until the
    /// token is dropped, which may happen in the call. The binding catches what it throws.
    virtual AnyCancellable observeDidEnterBackground(std::function<void()> observer) = 0;

    /// Calls `interceptor` on the main thread for every controller of the application whose screen has
    /// appeared, just before the controller's own `viewDidAppear`, until the token is dropped. That handler
    /// runs in any case, whatever the interceptor does or throws. An empty token says that this toolkit has
    /// no such hook; nothing has changed then. AppearanceDelivery answers both for a binding.
    virtual AnyCancellable interceptViewDidAppear(AppearanceInterceptor interceptor) = 0;
    /// The same before `viewDidDisappear`. One of the two may be there without the other.
    virtual AnyCancellable interceptViewDidDisappear(AppearanceInterceptor interceptor) = 0;
};

}  // namespace mireth::platform
