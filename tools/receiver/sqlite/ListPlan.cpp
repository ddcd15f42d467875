// Each condition is worth leading when it names few sessions; counting stops soon, so that finding out costs
// less than it saves. Where every condition names many, a walk through the newest sessions fills the page
// early.
#include "sqlite/ListPlan.hpp"

#include <algorithm>
#include <array>

#include "sqlite/TextSearch.hpp"

namespace mireth::receiver {
namespace {

// From here on a condition names "many" sessions or texts.
constexpr std::int64_t many = 5000;

using Value = std::variant<std::int64_t, std::string>;

// A condition that is checked for each session, and how it could lead instead.
struct Condition {
    std::string check;
    std::vector<Value> checked;
    std::string lead;  ///< instead of the check; empty when it cannot lead
    std::vector<Value> led;
    std::string index;       ///< that the lead needs; empty: SQLite's choice
    std::int64_t names = 0;  ///< how many sessions it names, `many` at most
};

void bindAll(Statement& statement, const std::vector<Value>& values) {
    for (const auto& value : values) {
        std::visit([&](const auto& plain) { statement.bind(plain); }, value);
    }
}

std::int64_t countOf(const Database& database, const std::string& from, const std::vector<Value>& values) {
    auto count = database.prepare("SELECT count(*) FROM (SELECT 1 FROM " + from + " LIMIT " +
                                  std::to_string(many) + ")");
    bindAll(count, values);
    count.step();
    return count.whole(0);
}

struct SignalColumn {
    const char* column;
    const char* index;  ///< of the sessions with such a signal
};

SignalColumn columnOf(Signal signal) {
    switch (signal) {
        case Signal::tap:
            return {"taps", ""};
        case Signal::rageTap:
            return {"rageTaps", "sessionWithRageTap"};
        case Signal::deadTap:
            return {"deadTaps", "sessionWithDeadTap"};
        case Signal::errorTap:
            return {"errorTaps", "sessionWithErrorTap"};
    }
    return {};
}

Condition signalCondition(const Database& database, Signal signal) {
    const auto [column, index] = columnOf(signal);
    Condition condition{.check = std::string(column) + " > 0",
                        .checked = {},
                        .lead = {},
                        .led = {},
                        .index = index,
                        .names = many};
    // Nearly every session has a tap: no index, no lead.
    if (!condition.index.empty()) {
        condition.lead = condition.check;
        condition.names =
            countOf(database, "session INDEXED BY " + condition.index + " WHERE " + condition.check, {});
    }
    return condition;
}

Condition projectCondition(const Database& database, const std::string& project) {
    return {.check = "projectId = ?",
            .checked = {project},
            .lead = "projectId = ?",
            .led = {project},
            .index = "sessionByProject",
            .names = countOf(database, "session WHERE projectId = ?", {project})};
}

// For texts that are known by their ids, as a JSON array.
Condition textsCondition(const Database& database, const std::string& ids) {
    const std::string among = "textId IN (SELECT value FROM json_each(?))";
    // The plus keeps SQLite from looking up every id for every session: a session has fewer texts than that.
    return {.check = "EXISTS (SELECT 1 FROM sessionText WHERE sessionText.place = session.place AND +" +
                     among + ")",
            .checked = {ids},
            .lead = "place IN (SELECT place FROM sessionText WHERE " + among + ")",
            .led = {ids},
            .index = {},
            .names = countOf(database, "sessionText WHERE " + among, {ids})};
}

// For a text that stands in so many texts that listing them would take longer than looking.
Condition looseTextCondition(const std::string& folded) {
    return {.check =
                "EXISTS (SELECT 1 FROM sessionText JOIN text ON text.id = textId"
                " WHERE sessionText.place = session.place AND instr(folded, ?) > 0)",
            .checked = {folded},
            .lead = {},
            .led = {},
            .index = {},
            .names = many};
}

// The text's rarest run of three characters and how many texts have it.
std::optional<std::pair<std::string, std::int64_t>> rarestGram(const Database& database,
                                                               const std::string& folded) {
    std::optional<std::pair<std::string, std::int64_t>> rarest;
    for (const auto& gram : gramsOf(folded)) {
        const auto count = countOf(database, "gram WHERE gram = ?", {gram});
        if (!rarest || count < rarest->second) {
            rarest = {gram, count};
        }
    }
    return rarest;
}

struct Ids {
    std::string json;  ///< an array; empty when there are none
    std::int64_t count = 0;
};

Ids idsOf(Statement& rows) {
    Ids ids;
    for (; rows.step(); ++ids.count) {
        ids.json += (ids.json.empty() ? "[" : ",") + std::to_string(rows.whole(0));
    }
    ids.json += ids.json.empty() ? "" : "]";
    return ids;
}

// The texts in which `folded` stands, `many` at most.
Ids textsWith(const Database& database, const std::string& folded) {
    const auto rarest = rarestGram(database, folded);
    const auto within = " instr(folded, ?) > 0 LIMIT " + std::to_string(many);
    // Too short for a run of three characters, or of common ones only: there are far fewer texts than
    // sessions, so every text is looked at.
    const bool every = !rarest || rarest->second >= many;
    auto rows = database.prepare(
        every ? "SELECT id FROM text WHERE" + within
              : "SELECT id FROM gram JOIN text ON text.id = textId WHERE gram = ? AND" + within);
    if (!every) {
        rows.bind(rarest->first);
    }
    rows.bind(folded);
    return idsOf(rows);
}

std::optional<Condition> textCondition(const Database& database, const std::string& text) {
    const auto folded = foldedText(text);
    const auto ids = textsWith(database, folded);
    if (ids.count == 0) {
        return std::nullopt;
    }
    return ids.count < many ? textsCondition(database, ids.json) : looseTextCondition(folded);
}

std::optional<Condition> screenCondition(const Database& database, const std::string& screen) {
    auto rows = database.prepare("SELECT id FROM text WHERE kind = 0 AND value = ?");
    rows.bind(screen);
    const auto ids = idsOf(rows);
    return ids.count == 0 ? std::nullopt : std::optional(textsCondition(database, ids.json));
}

std::int64_t placeAt(std::int64_t millis) {
    constexpr std::int64_t most = INT64_MAX / 4096;
    return std::clamp(millis, -most, most) * 4096;
}

ListPlan planWith(const SessionQuery& query, const std::vector<Condition>& conditions) {
    const Condition* leader = nullptr;
    for (const auto& condition : conditions) {
        if (!condition.lead.empty() && (leader == nullptr || condition.names < leader->names)) {
            leader = &condition;
        }
    }
    if (leader != nullptr && leader->names >= many && leader->index.empty()) {
        leader = nullptr;
    }
    ListPlan plan;
    plan.sql = leader == nullptr       ? " NOT INDEXED"
               : leader->index.empty() ? ""
                                       : " INDEXED BY " + leader->index;
    plan.sql += " WHERE place < ? AND place >= ?";
    plan.values = {std::min(query.before.value_or(INT64_MAX), placeAt(query.toMillis.value_or(INT64_MAX))),
                   placeAt(query.fromMillis.value_or(INT64_MIN))};
    for (const auto& condition : conditions) {
        const bool leads = &condition == leader;
        plan.sql += " AND " + (leads ? condition.lead : condition.check);
        const auto& values = leads ? condition.led : condition.checked;
        plan.values.insert(plan.values.end(), values.begin(), values.end());
    }
    return plan;
}

}  // namespace

void ListPlan::bind(Statement& statement) const {
    bindAll(statement, values);
}

std::optional<ListPlan> planList(const Database& database, const SessionQuery& query) {
    // The cheapest to check first: SQLite checks what costs the same in this order.
    std::vector<std::optional<Condition>> conditions;
    if (query.signal) {
        conditions.push_back(signalCondition(database, *query.signal));
    }
    if (query.projectId) {
        conditions.push_back(projectCondition(database, *query.projectId));
    }
    if (query.screen) {
        conditions.push_back(screenCondition(database, *query.screen));
    }
    if (query.text) {
        conditions.push_back(textCondition(database, *query.text));
    }
    std::vector<Condition> all;
    for (auto& condition : conditions) {
        if (!condition) {
            return std::nullopt;
        }
        all.push_back(std::move(*condition));
    }
    return planWith(query, all);
}

}  // namespace mireth::receiver
