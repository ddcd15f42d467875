// The tables of the embedded store, and how those of an earlier receiver become these. Used by SqliteStore
// when it opens.
#pragma once

#include "sqlite/Database.hpp"

namespace mireth::receiver {

/// Makes the tables in a new database and brings those of an earlier receiver up to date, as one. Throws
/// DatabaseError when a newer receiver wrote them, or one whose form is no longer read; nothing changes then.
void prepareSchema(const Database& database);

/// Throws DatabaseError when the tables are not of this receiver's form; for those who only read.
void requireSchema(const Database& database);

}  // namespace mireth::receiver
