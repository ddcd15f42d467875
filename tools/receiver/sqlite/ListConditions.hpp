// The conditions of a query as SQL: how each is checked session by session, and how it could find its
// sessions by itself. ListPlan puts them together.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "sqlite/Database.hpp"
#include "sqlite/SqlValues.hpp"
#include "store/SessionQuery.hpp"

namespace mireth::receiver {

/// From here on a condition names "many" sessions or texts, and nobody counts further: finding out must cost
/// less than it saves.
inline constexpr std::int64_t manyRows = 5000;

struct ListCondition {
    /// Finds the sessions; takes the place of the filter then.
    struct Driver {
        std::string sql;
        SqlValues arguments = {};
        std::optional<std::string> index = std::nullopt;  ///< that it needs; none: SQLite's choice
    };

    std::string sqlFilter;  ///< true of a session that the condition names
    SqlValues filterArguments = {};
    std::optional<Driver> driver = std::nullopt;  ///< none when it can only be checked
    std::int64_t estimatedRows = manyRows;        ///< sessions that it names, `manyRows` at most
};

/// All but those on the time, the cheapest to check first; none when no session can meet one of them.
std::optional<std::vector<ListCondition>> listConditions(const Database& database, const SessionQuery& query);

}  // namespace mireth::receiver
