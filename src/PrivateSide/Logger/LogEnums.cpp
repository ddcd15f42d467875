// The texts of the public log enumerations and of MError.
#include "MirethVex/PublicSide/DataModels/Enums/LogLevel.hpp"
#include "MirethVex/PublicSide/DataModels/Enums/LogTag.hpp"
#include "MirethVex/PublicSide/DataModels/MError.hpp"

namespace mireth {

std::string_view key(LogTag tag) noexcept {
    switch (tag) {
        case LogTag::memoryUse:
            return "MEMORY_USE";
        case LogTag::lifecycle:
            return "LIFECYCLE";
        case LogTag::gesture:
            return "GESTURE";
        case LogTag::signal:
            return "SIGNAL";
        case LogTag::playback:
            return "PLAYBACK";
        case LogTag::network:
            return "NETWORK";
        case LogTag::navigation:
            return "NAVIGATION";
    }
    return "";
}

std::string_view rawValue(LogLevel level) noexcept {
    return level == LogLevel::info ? "info" : "error";
}

std::optional<LogLevel> logLevelFromRawValue(std::string_view text) noexcept {
    for (const LogLevel level : {LogLevel::info, LogLevel::error}) {
        if (text == rawValue(level)) {
            return level;
        }
    }
    return std::nullopt;
}

std::string_view getDecor(LogLevel level) noexcept {
    return level == LogLevel::error ? "\U0001F534" : "\U0001F7E2";
}

std::string MError::debugDescription() const {
    switch (kind) {
        case Kind::undefined:
            return "Undefined";
        case Kind::permissionNotGranted:
            return "Permission not granted.";
        case Kind::permissionNotRevoked:
            return "Permission not revoked.";
        case Kind::recordingCanceled:
            return "Recording canceled.";
        case Kind::customClassMaskingFailed:
            return "Failed configuring masking for one of the provided classes: " + className;
    }
    return "Undefined";
}

std::string MError::errorDescription() const {
    switch (kind) {
        case Kind::undefined:
            return "Something went wrong when attempting to initialise the VEX.";
        case Kind::permissionNotGranted:
            return "Something went wrong when attempting to grant permission for data collection. Please "
                   "retry.";
        case Kind::permissionNotRevoked:
            return "Something went wrong when attempting to revoke permission for data collection. Please "
                   "retry.";
        case Kind::recordingCanceled:
            return "Action canceled. Please make sure you have obtained user permission before you try to "
                   "record.";
        case Kind::customClassMaskingFailed:
            return "Provided value doesn't match the expected type. Please check your configuration.";
    }
    return "Something went wrong when attempting to start recording.";
}

}  // namespace mireth
