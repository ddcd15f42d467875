// One function for each kind of condition.
#include "sqlite/ListConditions.hpp"

#include <utility>

#include "sqlite/TextLookup.hpp"
#include "sqlite/TextSearch.hpp"

namespace mireth::receiver {
namespace {

struct SignalColumn {
    const char* column;
    const char* index;  ///< of the sessions with such a signal; null: there is none
};

SignalColumn columnOf(Signal signal) {
    switch (signal) {
        case Signal::tap:
            // Nearly every session has one.
            return {.column = "taps", .index = nullptr};
        case Signal::rageTap:
            return {.column = "rageTaps", .index = "sessionWithRageTap"};
        case Signal::deadTap:
            return {.column = "deadTaps", .index = "sessionWithDeadTap"};
        case Signal::errorTap:
            return {.column = "errorTaps", .index = "sessionWithErrorTap"};
    }
    return {};
}

ListCondition signalCondition(const Database& database, Signal signal) {
    const auto [column, index] = columnOf(signal);
    ListCondition condition{.sqlFilter = std::string(column) + " > 0"};
    if (index != nullptr) {
        condition.driver = {.sql = condition.sqlFilter, .index = index};
        condition.estimatedRows = boundedCount(
            database, std::string("session INDEXED BY ") + index + " WHERE " + condition.sqlFilter, {},
            manyRows);
    }
    return condition;
}

ListCondition projectCondition(const Database& database, const std::string& project) {
    const std::string filter = "projectId = ?";
    return {
        .sqlFilter = filter,
        .filterArguments = {project},
        .driver = ListCondition::Driver{.sql = filter, .arguments = {project}, .index = "sessionByProject"},
        .estimatedRows = boundedCount(database, "session WHERE " + filter, {project}, manyRows)};
}

ListCondition knownTextsCondition(const Database& database, const TextIds& texts) {
    const std::string among = "textId IN (SELECT value FROM json_each(?))";
    // The plus keeps SQLite from looking up every id for every session: a session has fewer texts than that.
    return {
        .sqlFilter =
            "EXISTS (SELECT 1 FROM sessionText WHERE sessionText.place = session.place AND +" + among + ")",
        .filterArguments = {texts.json},
        .driver = ListCondition::Driver{.sql = "place IN (SELECT place FROM sessionText WHERE " + among + ")",
                                        .arguments = {texts.json}},
        .estimatedRows = boundedCount(database, "sessionText WHERE " + among, {texts.json}, manyRows)};
}

// For a text that stands in so many texts that listing them would take longer than looking.
ListCondition commonTextCondition(const std::string& folded) {
    return {.sqlFilter =
                "EXISTS (SELECT 1 FROM sessionText JOIN text ON text.id = textId"
                " WHERE sessionText.place = session.place AND instr(folded, ?) > 0)",
            .filterArguments = {folded}};
}

std::optional<ListCondition> screenCondition(const Database& database, const std::string& screen) {
    const auto texts = screensNamed(database, screen);
    return texts.count == 0 ? std::nullopt : std::optional(knownTextsCondition(database, texts));
}

std::optional<ListCondition> textCondition(const Database& database, const std::string& text) {
    const auto folded = foldedText(text);
    const auto texts = textsContaining(database, folded, manyRows);
    if (texts.count == 0) {
        return std::nullopt;
    }
    return texts.count < manyRows ? knownTextsCondition(database, texts) : commonTextCondition(folded);
}

}  // namespace

std::optional<std::vector<ListCondition>> listConditions(const Database& database,
                                                         const SessionQuery& query) {
    // SQLite checks what costs the same in this order.
    std::vector<ListCondition> conditions;
    if (query.signal) {
        conditions.push_back(signalCondition(database, *query.signal));
    }
    if (query.projectId) {
        conditions.push_back(projectCondition(database, *query.projectId));
    }
    const auto add = [&conditions](std::optional<ListCondition> condition) {
        const bool canBeMet = condition.has_value();
        if (canBeMet) {
            conditions.push_back(std::move(*condition));
        }
        return canBeMet;
    };
    if (query.screen && !add(screenCondition(database, *query.screen))) {
        return std::nullopt;
    }
    if (query.text && !add(textCondition(database, *query.text))) {
        return std::nullopt;
    }
    return conditions;
}

}  // namespace mireth::receiver
