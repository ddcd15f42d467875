#include "platforms/linux/system/ChassisIdiom.hpp"

#include <charconv>

namespace mireth::platform {

UserInterfaceIdiom idiomOfChassisName(std::string_view name) {
    if (name == "handset") {
        return UserInterfaceIdiom::phone;
    }
    if (name == "tablet") {
        return UserInterfaceIdiom::pad;
    }
    for (const std::string_view desktop : {"desktop", "laptop", "convertible", "server", "all-in-one"}) {
        if (name == desktop) {
            return UserInterfaceIdiom::desktop;
        }
    }
    return UserInterfaceIdiom::unspecified;
}

UserInterfaceIdiom idiomOfDmiChassis(std::string_view type) {
    int number = 0;
    const auto parsed = std::from_chars(type.data(), type.data() + type.size(), number);
    if (parsed.ec != std::errc() || parsed.ptr != type.data() + type.size()) {
        return UserInterfaceIdiom::unspecified;
    }
    switch (number) {
        case 11:  // hand held
            return UserInterfaceIdiom::phone;
        case 30:  // tablet
            return UserInterfaceIdiom::pad;
        case 3:   // desktop
        case 4:   // low-profile desktop
        case 5:   // pizza box
        case 6:   // mini tower
        case 7:   // tower
        case 8:   // portable
        case 9:   // laptop
        case 10:  // notebook
        case 13:  // all in one
        case 14:  // sub-notebook
        case 17:  // main server chassis
        case 23:  // rack mount chassis
        case 28:  // blade
        case 29:  // blade enclosure
        case 31:  // convertible
        case 32:  // detachable
        case 35:  // mini PC
        case 36:  // stick PC
            return UserInterfaceIdiom::desktop;
        default:
            return UserInterfaceIdiom::unspecified;
    }
}

}  // namespace mireth::platform
