// An application whose hooks for appearing and disappearing screens can be missing.
#pragma once

#include <memory>
#include <utility>

#include "MirethVex/Platform/AppearanceDelivery.hpp"

namespace mireth::test {

/// No answer to the whole contract, on purpose: what listens to screens needs neither a key window nor moves
/// to the background.
class HookedApplication final : public platform::Application {
  public:
    bool hasAppearHook = true;
    bool hasDisappearHook = true;
    /// How often each hook was asked for.
    int appearRequests = 0;
    int disappearRequests = 0;
    platform::AppearanceDelivery appearance;

    std::shared_ptr<platform::Window> keyWindow() const override { return nullptr; }
    AnyCancellable observeDidEnterBackground(std::function<void()>) override { return {}; }
    AnyCancellable interceptViewDidAppear(platform::AppearanceInterceptor interceptor) override {
        ++appearRequests;
        return hasAppearHook ? appearance.interceptViewDidAppear(std::move(interceptor)) : AnyCancellable();
    }
    AnyCancellable interceptViewDidDisappear(platform::AppearanceInterceptor interceptor) override {
        ++disappearRequests;
        return hasDisappearHook ? appearance.interceptViewDidDisappear(std::move(interceptor))
                                : AnyCancellable();
    }
};

}  // namespace mireth::test
