// The list of sessions, page by page, newest first.
#include <string>
#include <utility>

#include "sqlite/ListPlan.hpp"
#include "sqlite/SqliteGuard.hpp"
#include "sqlite/SqliteStore.hpp"
#include "sqlite/SummaryRow.hpp"

namespace mireth::receiver {
namespace {

// A choice among more than this is no help; the text search finds the others.
constexpr std::size_t mostScreens = 1000;

}  // namespace

void SqliteStore::addScreens(std::int64_t place, SessionSummary& summary) const {
    auto row = reader_.prepare(
        "SELECT value, count(*) OVER () FROM sessionText JOIN text ON text.id = textId WHERE place = ? AND"
        " kind = 0 ORDER BY chunkNumber, position LIMIT 10");
    row.bind(place);
    while (row.step()) {
        summary.screens.push_back(row.text(0));
        summary.screenCount = row.whole(1);
    }
}

Stored<SessionPage> SqliteStore::list(const SessionQuery& query) {
    return reading("cannot list the sessions", [&] {
        SessionPage page;
        if (!query.filters()) {
            auto count = reader_.prepare("SELECT count(*) FROM session");
            count.step();
            page.total = count.whole(0);
        }
        const auto plan = planList(reader_, query);
        if (!plan) {
            return page;
        }
        auto row = reader_.prepare(std::string("SELECT ") + sessionColumns + sumColumns +
                                   ", place FROM session" + plan->sql + " ORDER BY place DESC LIMIT ?");
        plan->bind(row);
        row.bind(static_cast<std::int64_t>(query.limit) + 1);
        std::vector<std::int64_t> places;
        while (row.step()) {
            if (places.size() == query.limit) {
                page.next = places.back();
                break;
            }
            page.sessions.push_back(summaryIn(row));
            places.push_back(row.whole(placeColumn));
        }
        for (std::size_t i = 0; i < places.size(); ++i) {
            addScreens(places[i], page.sessions[i]);
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
        auto screen = reader_.prepare("SELECT value FROM text WHERE kind = 0 ORDER BY value LIMIT ?");
        screen.bind(static_cast<std::int64_t>(mostScreens) + 1);
        while (screen.step()) {
            facets.screens.push_back(screen.text(0));
        }
        facets.moreScreens = facets.screens.size() > mostScreens;
        if (facets.moreScreens) {
            facets.screens.pop_back();
        }
        return facets;
    });
}

Stored<StoreStats> SqliteStore::stats() {
    return reading("cannot count what is kept", [&] {
        // Only to see that there is an answer.
        reader_.prepare("SELECT 1 FROM session LIMIT 1").step();
        return StoreStats{.sessions = sessions_,
                          .chunks = chunks_,
                          .videoBytes = budget_->videoBytes(),
                          .databaseBytes = budget_->databaseBytes(),
                          .freeBytes = budget_->freeBytes()};
    });
}

}  // namespace mireth::receiver
