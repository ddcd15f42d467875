// Decides how one page of the list of sessions is found: which condition drives the query, so that few
// sessions are looked at, and which are checked as filters on the way. Used by SqliteStore.
//
// An example: "the sessions of project p1 with 'cart' in a text", where 90 sessions have such a text (of ids
// 7 and 12) and very many are of that project. The text drives, the project is checked:
//
//     SELECT … FROM session
//         WHERE place < ? AND place >= ?      -- the page before, and the times
//           AND projectId = ?                 -- filter: 'p1'
//           AND place IN (SELECT place FROM sessionText                     -- driver: '[7,12]'
//                         WHERE textId IN (SELECT value FROM json_each(?)))
//         ORDER BY place DESC LIMIT ?
//
// Did the project have fewer sessions than the text, "INDEXED BY sessionByProject" would follow "session",
// and the text would be an EXISTS (…) that is asked for each of the project's sessions. Where every condition
// names many and none has an index of sessions, "NOT INDEXED" lets SQLite walk from the newest session on:
// the page is full early.
#pragma once

#include <optional>
#include <string>

#include "sqlite/Database.hpp"
#include "sqlite/SqlValues.hpp"
#include "store/SessionQuery.hpp"

namespace mireth::receiver {

/// What stands between "FROM session" and "ORDER BY place DESC" in the page's query, and the values of its
/// question marks.
struct ListPlan {
    std::string sql;
    SqlValues values;

    void bind(Statement& statement) const { bindAll(statement, values); }
};

/// None when no session can be on the page.
std::optional<ListPlan> planList(const Database& database, const SessionQuery& query);

}  // namespace mireth::receiver
