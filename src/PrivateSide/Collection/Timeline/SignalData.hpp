// The event data of the tap interaction and of the three frustration signals.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "PrivateSide/Collection/Timeline/EventData.hpp"

namespace mireth {

template <class Base, auto fixedType>
class TouchEventData : public Base {
  public:
    TouchEventData(std::int64_t timestamp, Target target) : timestamp_(timestamp), target_(target) {}
    EventType type() const override { return fixedType; }
    std::int64_t timestamp() const override { return timestamp_; }
    Target target() const override { return target_; }

  private:
    std::int64_t timestamp_;
    Target target_;
};

using TapInteractionData = TouchEventData<SessionInteractionData, SessionInteractionType::tap>;
using RageTapSignalData = TouchEventData<SessionSignalData, SessionSignalType::rageTap>;
using DeadTapSignalData = TouchEventData<SessionSignalData, SessionSignalType::deadTap>;

/// Also carries the message of the error that the app reported.
class ErrorTapSignalData final : public TouchEventData<SessionSignalData, SessionSignalType::errorTap> {
  public:
    ErrorTapSignalData(std::int64_t timestamp, Target target, std::string message)
        : TouchEventData(timestamp, target), message_(std::move(message)) {}
    const std::string& message() const noexcept { return message_; }

  private:
    std::string message_;
};

}  // namespace mireth
