// What can go wrong in a call that the host makes with a value it chose itself.
#pragma once

#include <string>

#include "MirethVex/Base/Export.hpp"

namespace mireth {

/// A value type. Of its kinds this library raises `customClassMaskingFailed` only.
struct MIRETH_EXPORT MError {
    enum class Kind {
        undefined,
        permissionNotGranted,
        permissionNotRevoked,
        recordingCanceled,
        customClassMaskingFailed
    };

    Kind kind = Kind::undefined;
    /// The class that could not be masked; empty for the other kinds.
    std::string className;

    bool operator==(const MError&) const = default;

    /// For log lines; in English, with the class's name.
    std::string debugDescription() const;
    /// For people; in English.
    std::string errorDescription() const;
};

}  // namespace mireth
