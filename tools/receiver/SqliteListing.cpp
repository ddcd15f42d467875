// The list of sessions, page by page, newest first.
#include <string>
#include <utility>

#include "SqliteGuard.hpp"
#include "SqliteStore.hpp"
#include "SummaryRow.hpp"

namespace mireth::receiver {
namespace {

// A signal's partial index walks only the sessions that have one, in the order of the list. Nearly every
// session has a tap, so taps need none.
const char* indexFor(const SessionQuery& query) {
    if (query.signal == Signal::rageTap) {
        return " INDEXED BY sessionWithRageTap";
    }
    if (query.signal == Signal::deadTap) {
        return " INDEXED BY sessionWithDeadTap";
    }
    if (query.signal == Signal::errorTap) {
        return " INDEXED BY sessionWithErrorTap";
    }
    return "";
}

const char* conditionOf(Signal signal) {
    switch (signal) {
        case Signal::tap:
            return " AND taps > 0";
        case Signal::rageTap:
            return " AND rageTaps > 0";
        case Signal::deadTap:
            return " AND deadTaps > 0";
        case Signal::errorTap:
            return " AND errorTaps > 0";
    }
    return "";
}

// In a LIKE pattern with "\" as its escape.
std::string likeAnywhere(const std::string& text) {
    std::string pattern = "%";
    for (const char c : text) {
        if (c == '%' || c == '_' || c == '\\') {
            pattern += '\\';
        }
        pattern += c;
    }
    return pattern + "%";
}

std::string conditions(const SessionQuery& query) {
    std::string sql = " WHERE place < ? AND place >= ?";
    sql += query.projectId ? " AND projectId = ?" : "";
    sql += query.signal ? conditionOf(*query.signal) : "";
    sql += query.screen ? " AND EXISTS (SELECT 1 FROM sessionText WHERE place = session.place AND textId ="
                          " (SELECT id FROM text WHERE kind = 0 AND value = ?))"
                        : "";
    sql += query.text ? " AND EXISTS (SELECT 1 FROM sessionText JOIN text ON text.id = textId"
                        " WHERE place = session.place AND value LIKE ? ESCAPE '\\')"
                      : "";
    return sql;
}

std::int64_t placeAt(std::int64_t millis) {
    constexpr std::int64_t most = INT64_MAX / 4096;
    return std::clamp(millis, -most, most) * 4096;
}

}  // namespace

std::vector<std::string> SqliteStore::screensOf(std::int64_t place) const {
    std::vector<std::string> screens;
    auto row = reader_.prepare(
        "SELECT value FROM sessionText JOIN text ON text.id = textId WHERE place = ? AND kind = 0"
        " ORDER BY chunkNumber, position");
    row.bind(place);
    while (row.step()) {
        screens.push_back(row.text(0));
    }
    return screens;
}

Stored<SessionPage> SqliteStore::list(const SessionQuery& query) {
    return reading("cannot list the sessions", [&] {
        auto row =
            reader_.prepare(std::string("SELECT ") + sessionColumns + sumColumns + ", place FROM session" +
                            indexFor(query) + conditions(query) + " ORDER BY place DESC LIMIT ?");
        row.bind(std::min(query.before.value_or(INT64_MAX), placeAt(query.toMillis.value_or(INT64_MAX))))
            .bind(placeAt(query.fromMillis.value_or(INT64_MIN)));
        if (query.projectId) {
            row.bind(*query.projectId);
        }
        if (query.screen) {
            row.bind(*query.screen);
        }
        if (query.text) {
            row.bind(likeAnywhere(*query.text));
        }
        row.bind(static_cast<std::int64_t>(query.limit) + 1);
        SessionPage page;
        std::vector<std::int64_t> places;
        while (row.step()) {
            if (page.sessions.size() == query.limit) {
                page.next = places.back();
                break;
            }
            page.sessions.push_back(summaryIn(row));
            places.push_back(row.whole(placeColumn));
        }
        for (std::size_t i = 0; i < places.size(); ++i) {
            page.sessions[i].screens = screensOf(places[i]);
        }
        if (!query.filters()) {
            auto count = reader_.prepare("SELECT count(*) FROM session");
            count.step();
            page.total = count.whole(0);
        }
        return page;
    });
}

Stored<Facets> SqliteStore::facets() {
    return reading("cannot read what there is to filter by", [&] {
        Facets facets;
        // Steps from one project to the next instead of looking at every session.
        auto project = reader_.prepare("SELECT min(projectId) FROM session WHERE projectId > ?");
        for (std::string last;; project.reset()) {
            project.bind(last).step();
            if (project.isNull(0)) {
                break;
            }
            facets.projects.push_back(last = project.text(0));
        }
        auto screen = reader_.prepare("SELECT value FROM text WHERE kind = 0 ORDER BY value LIMIT 1000");
        while (screen.step()) {
            facets.screens.push_back(screen.text(0));
        }
        return facets;
    });
}

}  // namespace mireth::receiver
