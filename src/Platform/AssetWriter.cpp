// The words for a writer's states.
#include "MirethVex/Platform/AssetWriter.hpp"

namespace mireth::platform {

std::string_view toString(AssetWriterStatus status) noexcept {
    switch (status) {
        case AssetWriterStatus::unknown:
            return "unknown";
        case AssetWriterStatus::writing:
            return "writing";
        case AssetWriterStatus::completed:
            return "completed";
        case AssetWriterStatus::failed:
            return "failed";
        case AssetWriterStatus::cancelled:
            return "cancelled";
    }
    return "unknown";
}

}  // namespace mireth::platform
