// Turns the tables of an earlier receiver into this one's, every session kept. Used by SqliteSchema.
#pragma once

#include "sqlite/Database.hpp"

namespace mireth::receiver {

/// From version 2 to version 3, within the caller's transaction. Throws DatabaseError when tables are
/// missing.
void updateFromVersion2(const Database& database);

}  // namespace mireth::receiver
