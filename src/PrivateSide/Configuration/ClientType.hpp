// Whether the library is used directly or through a cross-platform wrapper.
#pragma once

#include <optional>
#include <string_view>

namespace mireth {

enum class ClientType { VEXMobileIOS, VEXMobileIOSReactNative };

/// The case's name, as the service knows it.
std::string_view rawValue(ClientType type) noexcept;
std::optional<ClientType> clientTypeFromRawValue(std::string_view text) noexcept;

}  // namespace mireth
