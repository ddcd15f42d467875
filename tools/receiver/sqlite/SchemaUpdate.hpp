// Turns the tables of an earlier receiver into this one's, every session kept. Used by SqliteSchema.
#pragma once

#include "sqlite/Database.hpp"

namespace mireth::receiver {

/// From version 2, 3 or 4 to version 5, within the caller's transaction. Throws DatabaseError when tables are
/// missing.
void updateSchema(const Database& database);

}  // namespace mireth::receiver
