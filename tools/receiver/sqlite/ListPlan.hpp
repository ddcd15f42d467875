// Decides how one page of the list of sessions is found: which condition leads the way, so that few sessions
// are looked at, and which are checked on the way. Used by SqliteStore.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "sqlite/Database.hpp"
#include "store/SessionQuery.hpp"

namespace mireth::receiver {

/// What stands between "FROM session" and "ORDER BY place DESC" in the page's query, and the values of its
/// question marks.
struct ListPlan {
    std::string sql;
    std::vector<std::variant<std::int64_t, std::string>> values;

    void bind(Statement& statement) const;
};

/// None when no session can be on the page.
std::optional<ListPlan> planList(const Database& database, const SessionQuery& query);

}  // namespace mireth::receiver
