// The areas of the library that write log lines.
#pragma once

#include <array>
#include <string_view>

#include "MirethVex/Base/Export.hpp"

namespace mireth {

enum class LogTag { memoryUse, lifecycle, gesture, signal, playback, network, navigation };

inline constexpr std::array allLogTags{LogTag::memoryUse, LogTag::lifecycle, LogTag::gesture,
                                       LogTag::signal,    LogTag::playback,  LogTag::network,
                                       LogTag::navigation};

/// The category text of the tag in the system log, such as "LIFECYCLE".
MIRETH_EXPORT std::string_view key(LogTag tag) noexcept;

}  // namespace mireth
