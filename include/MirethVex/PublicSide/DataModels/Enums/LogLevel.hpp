// The two levels of a log line.
#pragma once

#include <optional>
#include <string_view>

#include "MirethVex/Base/Export.hpp"

namespace mireth {

enum class LogLevel { info, error };

/// "info" or "error".
MIRETH_EXPORT std::string_view rawValue(LogLevel level) noexcept;

/// The level with exactly this raw value, or nothing.
MIRETH_EXPORT std::optional<LogLevel> logLevelFromRawValue(std::string_view text) noexcept;

/// One glyph for the level: a large red circle (U+1F534) for errors, a large green one (U+1F7E2) for infos.
MIRETH_EXPORT std::string_view getDecor(LogLevel level) noexcept;

}  // namespace mireth
