// From the names and numbers of chassis to the idioms of user interfaces. Used by LinuxDevice.
#pragma once

#include <string_view>

#include "MirethVex/Platform/Device.hpp"

namespace mireth::platform {

/// A chassis name of machine-info(5) or of the device tree (Devicetree Specification 0.4, 3.1); unspecified
/// for names that are unknown or have no idiom (watch, embedded, vm, container).
UserInterfaceIdiom idiomOfChassisName(std::string_view name);

/// A chassis type of DMI in decimal digits (SMBIOS 3.6, 7.4.1); unspecified likewise.
UserInterfaceIdiom idiomOfDmiChassis(std::string_view type);

}  // namespace mireth::platform
