// Interceptors first, then the controller itself.
#include "MirethVex/Platform/AppearanceDelivery.hpp"

#include <utility>

#include "Base/GuardedRun.hpp"
#include "MirethVex/Platform/ViewController.hpp"

namespace mireth::platform {

namespace {

constexpr const char* anInterceptor = "an interceptor of appearing screens";

auto containing(AppearanceInterceptor interceptor) {
    return [interceptor = std::move(interceptor)](const std::shared_ptr<ViewController>& controller) {
        runGuarded(anInterceptor, [&] { interceptor(*controller); });
    };
}

/// Keeps the controller alive while it is told: what is passed may be the app's own pointer, and an
/// interceptor may make the app let go of it.
std::shared_ptr<ViewController> own(const std::shared_ptr<ViewController>& controller) {
    return controller;
}

}  // namespace

void AppearanceDelivery::didAppear(const std::shared_ptr<ViewController>& controller, bool animated) const {
    if (const auto receiver = own(controller)) {
        runGuarded(anInterceptor, [&] { appeared_.send(receiver); });
        receiver->viewDidAppear(animated);
    }
}

void AppearanceDelivery::didDisappear(const std::shared_ptr<ViewController>& controller,
                                      bool animated) const {
    if (const auto receiver = own(controller)) {
        runGuarded(anInterceptor, [&] { disappeared_.send(receiver); });
        receiver->viewDidDisappear(animated);
    }
}

AnyCancellable AppearanceDelivery::interceptViewDidAppear(AppearanceInterceptor interceptor) {
    return appeared_.sink(containing(std::move(interceptor)));
}

AnyCancellable AppearanceDelivery::interceptViewDidDisappear(AppearanceInterceptor interceptor) {
    return disappeared_.sink(containing(std::move(interceptor)));
}

}  // namespace mireth::platform
