// What a viewer asks of the list of sessions, and what comes back. Passed between the viewing API and the
// store.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "store/Records.hpp"

namespace mireth::receiver {

enum class Signal { tap, rageTap, deadTap, errorTap };

/// Every condition that is set must hold.
struct SessionQuery {
    std::size_t limit = 50;                             ///< sessions on the page, from 1
    std::optional<std::int64_t> before = std::nullopt;  ///< the `next` of the page before
    std::optional<std::string> projectId = std::nullopt;
    std::optional<std::int64_t> fromMillis = std::nullopt;  ///< started at this time or later
    std::optional<std::int64_t> toMillis = std::nullopt;    ///< started before this time
    std::optional<Signal> signal = std::nullopt;            ///< at least one of them
    std::optional<std::string> screen = std::nullopt;       ///< visited a screen of exactly this name
    std::optional<std::string> text =
        std::nullopt;  ///< stands within a screen's name or an error message, in any case

    bool filters() const { return projectId || fromMillis || toMillis || signal || screen || text; }
};

struct SessionPage {
    std::vector<SessionSummary> sessions;             ///< the last started first
    std::optional<std::int64_t> next = std::nullopt;  ///< none on the last page
    std::optional<std::int64_t> total =
        std::nullopt;  ///< of all pages; counted only for a query without a filter
};

/// What the list can be filtered by.
struct Facets {
    std::vector<std::string> projects;
    std::vector<std::string> screens;  ///< the first by name
    bool moreScreens = false;          ///< whether there are others
};

}  // namespace mireth::receiver
