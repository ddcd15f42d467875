// Rows of the texts by which sessions are found: each text stands once, beside its folded form and the runs
// of three characters in it. Used by the .cpp files of SqliteStore and by the update of an earlier schema.
#pragma once

#include <cstdint>
#include <string>

#include "sqlite/Database.hpp"
#include "store/TimelineSummary.hpp"

namespace mireth::receiver {

/// The id of the text's row, which is made when it is absent.
std::int64_t textRow(const Database& database, const FoundText& text);

/// The form in which a text is looked into: folded, and no more of it than tells it from others.
std::string searchedForm(const std::string& value);

/// Makes the row `id` one that can be found by `folded`, as TextSearch folds it.
void insertGrams(const Database& database, std::int64_t id, const std::string& folded);

}  // namespace mireth::receiver
