#include "MirethVex/PublicSide/DataModels/Enums/LogLevel.hpp"

namespace mireth {

std::string_view rawValue(LogLevel level) noexcept {
    return level == LogLevel::info ? "info" : "error";
}

std::optional<LogLevel> logLevelFromRawValue(std::string_view text) noexcept {
    for (const LogLevel level : {LogLevel::info, LogLevel::error}) {
        if (text == rawValue(level)) {
            return level;
        }
    }
    return std::nullopt;
}

std::string_view getDecor(LogLevel level) noexcept {
    return level == LogLevel::error ? "\U0001F534" : "\U0001F7E2";
}

}  // namespace mireth
