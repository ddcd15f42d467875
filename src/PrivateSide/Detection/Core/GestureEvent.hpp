// What a finished touch was.
#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include "MirethVex/Platform/View.hpp"
#include "PrivateSide/Detection/Core/TouchData.hpp"

namespace mireth {

/// A classified gesture. The library's own recogniser never makes `swipeLeft` or `swipeRight`; consumers
/// accept them all the same. Main thread.
class GestureEvent {
  public:
    enum class Kind { tap, quadrupleTap, undefined, swipeLeft, swipeRight };

    static GestureEvent tap(TouchData touchData, std::weak_ptr<platform::View> view);
    static GestureEvent quadrupleTap(TouchData touchData, std::weak_ptr<platform::View> view);
    static GestureEvent undefined() { return GestureEvent(Kind::undefined); }
    static GestureEvent swipeLeft() { return GestureEvent(Kind::swipeLeft); }
    static GestureEvent swipeRight() { return GestureEvent(Kind::swipeRight); }

    Kind kind() const noexcept { return kind_; }
    bool isTap() const noexcept { return kind_ == Kind::tap; }
    bool isSingleTap() const noexcept { return kind_ == Kind::tap; }
    bool isQuadrupleTap() const noexcept { return kind_ == Kind::quadrupleTap; }

    /// "SingleTap", "QuadrupleTap", "Undefined", "SwipeLeft", "SwipeRight".
    std::string_view key() const noexcept;
    std::string_view debugInfo() const noexcept;

    /// Of a tap or a quadruple tap; nothing for the other kinds.
    const std::optional<TouchData>& getTouchData() const noexcept { return touchData_; }
    /// The touched view of a tap or a quadruple tap; null for the other kinds, and when it is gone.
    std::shared_ptr<platform::View> getTargetView() const { return view_.lock(); }

    friend bool operator==(const GestureEvent& left, const GestureEvent& right);

  private:
    explicit GestureEvent(Kind kind) : kind_(kind) {}
    GestureEvent(Kind kind, TouchData touchData, std::weak_ptr<platform::View> view);

    Kind kind_;
    std::optional<TouchData> touchData_;
    std::weak_ptr<platform::View> view_;
};

}  // namespace mireth
