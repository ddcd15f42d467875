// Two forms of tables were written under number 2: the first had a full-text index over the texts, whose case
// rules were for ASCII only, and no sum of a session's timelines. The second is what version 3 is. Both
// summed up how long a session's chunks are, where version 4 has the length of its replay. Before version 5
// all log lines without a session were one project's.
#include "sqlite/SchemaUpdate.hpp"

#include "sqlite/TextRows.hpp"

namespace mireth::receiver {
namespace {

constexpr const char* fromTheFirstForm = R"sql(
DROP TRIGGER textAdded;
DROP TRIGGER textGone;
DROP TABLE textSearch;
ALTER TABLE session ADD COLUMN timelineBytes INTEGER NOT NULL DEFAULT 0;
UPDATE session SET timelineBytes =
    (SELECT coalesce(sum(length(CAST(timeline AS BLOB))), 0) FROM chunk WHERE chunk.place = session.place);
ALTER TABLE text ADD COLUMN folded TEXT NOT NULL DEFAULT '';
CREATE TABLE gram (
    gram TEXT NOT NULL,
    textId INTEGER NOT NULL,
    PRIMARY KEY (gram, textId)
) WITHOUT ROWID;
CREATE INDEX gramByText ON gram(textId);
)sql";

constexpr const char* lengthsOfReplays = R"sql(
UPDATE session SET durationMillis =
    (SELECT coalesce(max(chunk.number * 10000 + min(chunk.durationMillis, 10000)), 0)
     FROM chunk WHERE chunk.place = session.place);
)sql";

constexpr const char* projectsOfLogLines = R"sql(
ALTER TABLE logLine ADD COLUMN brandId TEXT NOT NULL DEFAULT '';
ALTER TABLE logLine ADD COLUMN projectId TEXT NOT NULL DEFAULT '';
)sql";

bool lacksProjectsOfLogLines(const Database& database) {
    return !database.prepare("SELECT 1 FROM pragma_table_info('logLine') WHERE name = 'projectId'").step();
}

bool isFirstForm(const Database& database) {
    return !database.prepare("SELECT 1 FROM sqlite_schema WHERE type = 'table' AND name = 'gram'").step();
}

// One text at a time: there may be more than fit into memory.
void foldTexts(const Database& database) {
    auto next = database.prepare("SELECT id, value FROM text WHERE id > ? ORDER BY id LIMIT 1");
    auto fold = database.prepare("UPDATE text SET folded = ? WHERE id = ?");
    for (std::int64_t id = 0; next.bind(id).step(); next.reset()) {
        id = next.whole(0);
        const auto folded = searchedForm(next.text(1));
        fold.bind(folded).bind(id).run();
        fold.reset();
        insertGrams(database, id, folded);
    }
}

}  // namespace

void updateSchema(const Database& database) {
    if (isFirstForm(database)) {
        database.execute(fromTheFirstForm);
        foldTexts(database);
    }
    database.execute(lengthsOfReplays);
    if (lacksProjectsOfLogLines(database)) {
        database.execute(projectsOfLogLines);
    }
    database.execute("PRAGMA user_version = 5");
}

}  // namespace mireth::receiver
