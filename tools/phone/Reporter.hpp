// What the phone prints: results of calls, log lines, the end.
#pragma once

#include <chrono>
#include <cstdio>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "MirethVex/PublicSide/DataModels/Enums/LogLevel.hpp"
#include "MirethVex/PublicSide/DataModels/Enums/LogTag.hpp"
#include "MirethVex/PublicSide/DataModels/Enums/SessionCloseResult.hpp"
#include "MirethVex/PublicSide/DataModels/Enums/SessionStartResult.hpp"
#include "MirethVex/PublicSide/DataModels/ReplaySessionInfo.hpp"

namespace mireth::phone {

using Instant = std::chrono::nanoseconds;

/// What a call of the library answered.
struct CallAnswer {
    std::string call;
    /// The case's name.
    std::string result;
    /// Of a session that was started.
    std::string message;
    std::optional<ReplaySessionInfo> info;
    /// Only a failure has a reason, and that may be absent.
    bool isFailure = false;
    std::optional<std::string> reason;

    static CallAnswer of(std::string call, std::string_view caseName);
    static CallAnswer of(std::string call, const SessionStartResult& result);
    static CallAnswer of(std::string call, const SessionCloseResult& result);
};

/// Any thread. Each line is written whole and at once.
class Reporter {
  public:
    virtual ~Reporter() = default;
    virtual void answer(Instant at, const CallAnswer& answer) = 0;
    virtual void log(Instant at, LogTag tag, LogLevel level, const std::string& line) = 0;
    virtual void end(Instant at, bool hasActiveSession, const std::string& state) = 0;
};

/// One JSON object a line. `out` outlives it.
std::unique_ptr<Reporter> makeJsonReporter(std::FILE* out);
/// Results only, as text for people; error lines of the log go to `errors`, which outlives it too.
std::unique_ptr<Reporter> makePlainReporter(std::FILE* out, std::FILE* errors);

}  // namespace mireth::phone
