// A condition is worth driving the query when it names few sessions.
#include "sqlite/ListPlan.hpp"

#include <algorithm>

#include "sqlite/ListConditions.hpp"

namespace mireth::receiver {
namespace {

std::int64_t placeAt(std::int64_t millis) {
    constexpr std::int64_t most = INT64_MAX / 4096;
    return std::clamp(millis, -most, most) * 4096;
}

// Null where a walk through the newest sessions is better.
const ListCondition* chooseDriver(const std::vector<ListCondition>& conditions) {
    const ListCondition* best = nullptr;
    for (const auto& condition : conditions) {
        if (condition.driver && (best == nullptr || condition.estimatedRows < best->estimatedRows)) {
            best = &condition;
        }
    }
    // An index of its own has the sessions in the order of the page, however many they are.
    const bool isWorthIt =
        best != nullptr && (best->estimatedRows < manyRows || best->driver->index.has_value());
    return isWorthIt ? best : nullptr;
}

std::string indexClause(const ListCondition* driving) {
    if (driving == nullptr) {
        return " NOT INDEXED";
    }
    return driving->driver->index ? " INDEXED BY " + *driving->driver->index : "";
}

}  // namespace

std::optional<ListPlan> planList(const Database& database, const SessionQuery& query) {
    const auto conditions = listConditions(database, query);
    if (!conditions) {
        return std::nullopt;
    }
    const auto* const driving = chooseDriver(*conditions);
    ListPlan plan{
        .sql = indexClause(driving) + " WHERE place < ? AND place >= ?",
        .values = {std::min(query.before.value_or(INT64_MAX), placeAt(query.toMillis.value_or(INT64_MAX))),
                   placeAt(query.fromMillis.value_or(INT64_MIN))}};
    for (const auto& condition : *conditions) {
        const bool drives = &condition == driving;
        plan.sql += " AND " + (drives ? condition.driver->sql : condition.sqlFilter);
        const auto& arguments = drives ? condition.driver->arguments : condition.filterArguments;
        plan.values.insert(plan.values.end(), arguments.begin(), arguments.end());
    }
    return plan;
}

}  // namespace mireth::receiver
