// The way on which a controller hears that its screen appeared or disappeared, and where others may listen
// in.
#pragma once

#include <memory>

#include "MirethVex/Base/AnyCancellable.hpp"
#include "MirethVex/Base/Export.hpp"
#include "MirethVex/Base/PassthroughSubject.hpp"
#include "MirethVex/Platform/Application.hpp"

namespace mireth::platform {

/// A toolkit binding owns one, behind its Application: it calls `didAppear` and `didDisappear` and never the
/// controllers' own handlers. Main thread only.
///
/// Each delivery runs the interceptors, in the order in which they were added, and then the controller's own
/// handler, in any case: what an interceptor throws is reported on standard error and goes no further. What
/// the controller's handler throws is the app's own affair and reaches the caller, after all else was done.
class MIRETH_EXPORT AppearanceDelivery {
  public:
    /// Runs `viewDidAppear(animated)` of the controller, which is kept alive meanwhile. Null is ignored.
    void didAppear(const std::shared_ptr<ViewController>& controller, bool animated) const;
    /// The same with `viewDidDisappear(animated)`.
    void didDisappear(const std::shared_ptr<ViewController>& controller, bool animated) const;

    /// Adds an interceptor until the token is dropped. One that is added or dropped by an interceptor counts
    /// from the next delivery.
    AnyCancellable interceptViewDidAppear(AppearanceInterceptor interceptor);
    AnyCancellable interceptViewDidDisappear(AppearanceInterceptor interceptor);

  private:
    using Stream = PassthroughSubject<std::shared_ptr<ViewController>>;

    Stream appeared_;
    Stream disappeared_;
};

}  // namespace mireth::platform
