// The host's options for one recorded session.
#pragma once

#include <expected>
#include <string>
#include <vector>

#include "MirethVex/Base/Export.hpp"
#include "MirethVex/Platform/ViewClass.hpp"
#include "MirethVex/PublicSide/DataModels/MError.hpp"

namespace mireth {

/// A value type, passed to `MirethSR::startRecording`.
struct MIRETH_EXPORT VexConfiguration {
    /// Masking. True: frames show everything as it is on screen, texts and pictures included. Default false.
    bool disableMasking = false;
    /// Masking. Views of these classes and of their subclasses are masked too; null pointers are ignored.
    /// Default none.
    std::vector<const platform::ViewClass*> additionalViewTypesToMask;

    /// Screens. True: appearing and disappearing screens are detected during the session. Default true.
    bool automaticNavigationTracking = true;

    VexConfiguration() = default;
    /// In the order of the fields: masking, then screens.
    VexConfiguration(bool disableMaskingFlag, bool automaticNavigationTrackingFlag);

    /// Masks views of the named classes too. Fails with `customClassMaskingFailed`, and logs it, at the first
    /// name that no class bears or whose class is not a view's. The logger is that of `MirethSR::shared()`,
    /// which is made by this call if need be: install platform services before. Any thread. Throws
    /// std::bad_alloc.
    static std::expected<VexConfiguration, MError> create(const std::vector<std::string>& viewTypeNamesToMask,
                                                          bool automaticNavigationTracking);
};

}  // namespace mireth
