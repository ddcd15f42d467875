// JSON values of the wire models. Keys keep the order in which they were set.
#pragma once

#include <nlohmann/json_fwd.hpp>

namespace mireth {

using Json = nlohmann::ordered_json;

/// A text that was read. Its keys are found fast however many there are; those of a `Json` are searched one
/// by one, so that reading an object with very many of them would take minutes.
using ParsedJson = nlohmann::json;

}  // namespace mireth
