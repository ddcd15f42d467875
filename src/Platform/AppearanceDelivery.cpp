// Interceptors first, then the controller itself.
#include "MirethVex/Platform/AppearanceDelivery.hpp"

#include <cstdio>
#include <exception>
#include <utility>

#include "MirethVex/Platform/ViewController.hpp"

namespace mireth::platform {

namespace {

/// Runs `work`; what it throws must keep neither another interceptor nor the controller from hearing.
template <class Work>
void contained(Work work) noexcept {
    try {
        work();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "M-VEX: an interceptor of appearing screens threw: %s\n", error.what());
    } catch (...) {
        std::fprintf(stderr, "M-VEX: an interceptor of appearing screens threw no std::exception\n");
    }
}

auto containing(AppearanceInterceptor interceptor) {
    return [interceptor = std::move(interceptor)](const std::shared_ptr<ViewController>& controller) {
        contained([&] { interceptor(*controller); });
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
        contained([&] { appeared_.send(receiver); });
        receiver->viewDidAppear(animated);
    }
}

void AppearanceDelivery::didDisappear(const std::shared_ptr<ViewController>& controller,
                                      bool animated) const {
    if (const auto receiver = own(controller)) {
        contained([&] { disappeared_.send(receiver); });
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
