#include "MirethVex/PublicSide/DataModels/MError.hpp"

namespace mireth {

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
