// How long, and how much, is kept. Carried out by Retention.
#pragma once

#include <cstdint>
#include <optional>

namespace mireth::receiver {

/// When sessions are removed by themselves; without a rule, never.
struct RetentionRules {
    std::optional<std::int64_t> days;    ///< since anything of a session came in
    std::optional<std::uint64_t> bytes;  ///< of all that is kept; the oldest sessions go first
};

}  // namespace mireth::receiver
