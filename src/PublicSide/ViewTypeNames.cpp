#include "PublicSide/ViewTypeNames.hpp"

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

}  // namespace mireth
