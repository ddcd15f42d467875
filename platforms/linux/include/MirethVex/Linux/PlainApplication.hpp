// The application of a host without a toolkit: the host says itself which window is the key one, which
// screens come and go, and when it moves to the background.
#pragma once

#include <memory>
#include <variant>

#include "MirethVex/Base/Export.hpp"
#include "MirethVex/Base/PassthroughSubject.hpp"
#include "MirethVex/Platform/AppearanceDelivery.hpp"
#include "MirethVex/Platform/Application.hpp"

namespace mireth::platform {

/// Main thread only.
class MIRETH_EXPORT PlainApplication final : public Application {
  public:
    /// The window is held weakly: it stays the host's. Null: there is no key window.
    void setKeyWindow(const std::shared_ptr<Window>& window) { keyWindow_ = window; }

    /// Tells every observer: a session that runs is stopped. What one of them throws is reported on standard
    /// error; the others still hear.
    void moveToBackground();

    /// What a host calls instead of its controllers' own handlers, which it runs.
    const AppearanceDelivery& appearance() const noexcept { return appearance_; }

    std::shared_ptr<Window> keyWindow() const override { return keyWindow_.lock(); }
    AnyCancellable observeDidEnterBackground(std::function<void()> observer) override;
    AnyCancellable interceptViewDidAppear(AppearanceInterceptor interceptor) override;
    AnyCancellable interceptViewDidDisappear(AppearanceInterceptor interceptor) override;

  private:
    std::weak_ptr<Window> keyWindow_;
    PassthroughSubject<std::monostate> didEnterBackground_;
    AppearanceDelivery appearance_;
};

}  // namespace mireth::platform
