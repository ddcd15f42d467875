// The token of a subscription: cancelling it or dropping it ends the subscription.
#pragma once

#include <functional>
#include <utility>

#include "MirethVex/Base/Export.hpp"

namespace mireth {

/// Owns one subscription or request. Move-only. Any thread may cancel, but one token is used by one thread
/// at a time. After `cancel()` returns no new call of the subscriber begins; a call already running on
/// another thread may still finish.
class [[nodiscard]] AnyCancellable {
  public:
    AnyCancellable() noexcept = default;

    /// `cancelAction` runs once: at `cancel()`, on assignment over this token, or on destruction.
    explicit AnyCancellable(std::move_only_function<void()> cancelAction) noexcept
        : cancelAction_(std::move(cancelAction)) {}

    AnyCancellable(AnyCancellable&& other) noexcept
        : cancelAction_(std::exchange(other.cancelAction_, nullptr)) {}

    AnyCancellable& operator=(AnyCancellable&& other) noexcept {
        if (this != &other) {
            cancel();
            cancelAction_ = std::exchange(other.cancelAction_, nullptr);
        }
        return *this;
    }

    AnyCancellable(const AnyCancellable&) = delete;
    AnyCancellable& operator=(const AnyCancellable&) = delete;
    ~AnyCancellable() { cancel(); }

    /// Ends the subscription. A second call does nothing. What the action throws ends here, with a line on
    /// standard error: tokens are dropped in destructors, where nobody could take it.
    MIRETH_EXPORT void cancel() noexcept;

    /// True while the token still holds a subscription.
    explicit operator bool() const noexcept { return static_cast<bool>(cancelAction_); }

  private:
    std::move_only_function<void()> cancelAction_;
};

}  // namespace mireth
