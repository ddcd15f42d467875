// Stands on the floor of the entry point, since the names of view types are looked up and logged here.
#include "MirethVex/PublicSide/DataModels/VexConfiguration.hpp"

#include <utility>

#include "PublicSide/ViewTypeNames.hpp"

namespace mireth {

VexConfiguration::VexConfiguration(bool disableMaskingFlag, bool automaticNavigationTrackingFlag)
    : disableMasking(disableMaskingFlag), automaticNavigationTracking(automaticNavigationTrackingFlag) {}

std::expected<VexConfiguration, MError> VexConfiguration::create(
    const std::vector<std::string>& viewTypeNamesToMask, bool automaticNavigationTracking) {
    auto classes = convertToViewTypes(MirethLog::shared(), viewTypeNamesToMask);
    if (!classes) {
        return std::unexpected(std::move(classes.error()));
    }
    VexConfiguration configuration(false, automaticNavigationTracking);
    configuration.additionalViewTypesToMask = std::move(*classes);
    return configuration;
}

}  // namespace mireth
