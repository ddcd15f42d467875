// What the library's own tools may look at and do beyond the public interface.
#pragma once

#include "MirethVex/PublicSide/MirethSR.hpp"
#include "PrivateSide/Collection/Timeline/EventData.hpp"

namespace mireth::diagnostics {

/// "stopped" (also before a project is initialised), "starting", "started" or "paused".
const char* sessionStateName(MirethSR& library) noexcept;

/// Injects a signal at the current time without a gesture; nothing before a project is initialised.
void recordSignal(MirethSR& library, SessionSignalType signalType, Target target);

}  // namespace mireth::diagnostics
