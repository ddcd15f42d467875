// What the detectors find, before it becomes a timeline event.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <variant>

namespace mireth {

/// A touch point in window points.
struct Target {
    float x = 0;
    float y = 0;
    bool operator==(const Target&) const = default;
};

enum class SessionSignalType { deadTap, rageTap, errorTap };
inline constexpr std::array allSessionSignalTypes{SessionSignalType::deadTap, SessionSignalType::rageTap,
                                                  SessionSignalType::errorTap};
/// "DeadTap", "RageTap", "ErrorTap".
std::string_view key(SessionSignalType type) noexcept;
std::string_view debugInfo(SessionSignalType type) noexcept;

enum class SessionInteractionType { tap };
inline constexpr std::array allSessionInteractionTypes{SessionInteractionType::tap};
/// "Tap".
std::string_view key(SessionInteractionType type) noexcept;
std::string_view debugInfo(SessionInteractionType type) noexcept;

using EventType = std::variant<SessionSignalType, SessionInteractionType>;
/// The key of the carried value.
std::string_view key(const EventType& type) noexcept;

/// Whatever a detector found. Touch-derived data carry the uptime clock, error taps the wall clock.
class EventData {
  public:
    virtual ~EventData() = default;
    virtual EventType type() const = 0;
    /// Milliseconds.
    virtual std::int64_t timestamp() const = 0;
};

class SessionSignalData : public EventData {
  public:
    virtual Target target() const = 0;
};

class SessionInteractionData : public EventData {
  public:
    virtual Target target() const = 0;
};

}  // namespace mireth
