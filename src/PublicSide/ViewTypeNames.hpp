// Resolves the class names that a host wants masked.
#pragma once

#include <expected>
#include <string>
#include <vector>

#include "MirethVex/Platform/ViewClass.hpp"
#include "MirethVex/PublicSide/DataModels/MError.hpp"
#include "PrivateSide/Logger/MirethLog.hpp"

namespace mireth {

/// The classes in the order of their names. Stops at the first name that no class bears or whose class is not
/// a view's; that one is logged.
std::expected<std::vector<const platform::ViewClass*>, MError> convertToViewTypes(
    MirethLog& log, const std::vector<std::string>& names);

}  // namespace mireth
