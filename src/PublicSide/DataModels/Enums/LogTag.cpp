#include "MirethVex/PublicSide/DataModels/Enums/LogTag.hpp"

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

}  // namespace mireth
