// Looks up which of the kept texts a viewer means. Used for the list's conditions.
#pragma once

#include <cstdint>
#include <string>

#include "sqlite/Database.hpp"

namespace mireth::receiver {

/// Ids of rows of the table "text".
struct TextIds {
    std::string json;  ///< as an array, for json_each; empty when there are none
    std::int64_t count = 0;
};

/// The texts in which `folded` stands, `most` at most.
TextIds textsContaining(const Database& database, const std::string& folded, std::int64_t most);

/// The screen of exactly this name.
TextIds screensNamed(const Database& database, const std::string& name);

}  // namespace mireth::receiver
