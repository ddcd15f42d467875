// Values of a statement's question marks that are only known when it runs, and counts that stop soon. Used
// where queries are put together.
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "sqlite/Database.hpp"

namespace mireth::receiver {

using SqlValue = std::variant<std::int64_t, std::string>;
using SqlValues = std::vector<SqlValue>;

void bindAll(Statement& statement, const SqlValues& values);

/// How many rows "SELECT … FROM `from`" has, `most` at most: it stops counting there. `values` are those of
/// the question marks in `from`.
std::int64_t boundedCount(const Database& database, const std::string& from, const SqlValues& values,
                          std::int64_t most);

}  // namespace mireth::receiver
