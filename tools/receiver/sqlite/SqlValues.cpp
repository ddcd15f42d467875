// A subquery with a limit is what lets SQLite stop counting.
#include "sqlite/SqlValues.hpp"

namespace mireth::receiver {

void bindAll(Statement& statement, const SqlValues& values) {
    for (const auto& value : values) {
        std::visit([&](const auto& plain) { statement.bind(plain); }, value);
    }
}

std::int64_t boundedCount(const Database& database, const std::string& from, const SqlValues& values,
                          std::int64_t most) {
    auto count = database.prepare("SELECT count(*) FROM (SELECT 1 FROM " + from + " LIMIT " +
                                  std::to_string(most) + ")");
    bindAll(count, values);
    count.step();
    return count.whole(0);
}

}  // namespace mireth::receiver
