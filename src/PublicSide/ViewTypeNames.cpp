#include "PublicSide/ViewTypeNames.hpp"

#include "MirethVex/PublicSide/DataModels/VexConfiguration.hpp"

namespace mireth {

std::expected<std::vector<const platform::ViewClass*>, MError> convertToViewTypes(
    MirethLog& log, const std::vector<std::string>& names) {
    std::vector<const platform::ViewClass*> classes;
    for (const auto& name : names) {
        const auto* viewClass = platform::ViewClass::find(name);
        if (viewClass == nullptr || !viewClass->isKindOf(platform::ViewClass::view())) {
            MError error{MError::Kind::customClassMaskingFailed, name};
            log.error(LogTag::lifecycle, error.debugDescription());
            return std::unexpected(std::move(error));
        }
        classes.push_back(viewClass);
    }
    return classes;
}

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
